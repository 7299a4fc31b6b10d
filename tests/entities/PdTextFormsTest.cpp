#include "entities/pd/PdIecOverview.h"
#include "entities/pd/PdTask.h"
#include "entities/pd/private/TextForms.h"
#include "support/TestMain.h"

#include <QRandomGenerator>
#include <QTest>

#include <cmath>
#include <cstring>
#include <limits>

using namespace PD::Entities;
using namespace QOR::Entities::Enumerations;

using Charges = QMap<double, double>;

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double unknown = std::numeric_limits<double>::quiet_NaN();

bool same(double left, double right)
{
    return std::isnan(left) ? std::isnan(right) : left == right && std::signbit(left) == std::signbit(right);
}

bool same(const Charges& left, const Charges& right)
{
    return left.keys() == right.keys() &&
           std::equal(left.begin(), left.end(), right.begin(), [](double a, double b) { return same(a, b); });
}

/// Any bit pattern: numbers of every size, denormal ones, infinities and NaN.
double randomDouble(QRandomGenerator& random)
{
    const quint64 bits = random.generate64();
    double number = 0;
    std::memcpy(&number, &bits, sizeof number);
    return number;
}

QString randomText(QRandomGenerator& random)
{
    const QString special = QStringLiteral("[]{}\",:;\\/\n\r\t '") + QChar(0) + QChar(0xfeff) + QChar(0xffff);
    QString text;
    for (quint32 length = random.bounded(8U); length > 0; --length) {
        const bool isSpecial = random.bounded(2) == 0;
        // Surrogates come alone too.
        text += isSpecial ? special.at(int(random.bounded(quint32(special.size())))) : QChar(random.bounded(0x10000U));
    }
    return text;
}

} // namespace

Q_DECLARE_METATYPE(Charges)

/// The text forms of values that have no column type of their own, and what entities do with text that they read.
class PdTextFormsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listsComeBack()
    {
        QRandomGenerator random(4711);
        for (int run = 0; run < 5000; ++run) {
            QStringList list;
            for (quint32 size = random.bounded(5U); size > 0; --size)
                list.append(randomText(random));
            const QString text = TextList::toText(list);
            QCOMPARE(TextList::fromText(text), list);
            // What a database may not keep must not stand in the text.
            QCOMPARE(QString::fromUtf8(text.toUtf8()), text);
            QVERIFY(!text.contains(QChar(0)));
        }
    }

    void storedDevicesStay_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("devices");
        const auto row = [](const char* name, const QString& text, const QStringList& devices) {
            QTest::newRow(name) << text << devices;
        };
        const auto alone = [row](const char* name, const QString& text) { row(name, text, {text}); };
        row("null", QString(), {});
        row("empty", QStringLiteral(""), {});
        row("no device", QStringLiteral("[]"), {});
        row("spaced", QStringLiteral(" [ \"a\" , \"\\u0062\" ]\n"), {QStringLiteral("a"), QStringLiteral("b")});
        alone("plain", QStringLiteral("Device 1; Device 2\nDevice 3"));
        alone("blank", QStringLiteral(" "));
        alone("numbers", QStringLiteral("[1,2]"));
        alone("mixed", QStringLiteral("[\"a\",null]"));
        alone("object", QStringLiteral("{\"a\":\"b\"}"));
        alone("broken", QStringLiteral("[\"a\""));
        alone("NUL", QStringLiteral("[\"a\"]") + QChar(0) + QStringLiteral("x"));
        alone("lone surrogate", QString(QChar(0xd83d)));
    }
    void storedDevicesStay()
    {
        QFETCH(QString, text);
        QFETCH(QStringList, devices);
        PdTask task;
        task.SetDevicesFromText(text);
        task.SetEntityState(Normal);
        QCOMPARE(task.Devices(), devices);
        task.SetDevices(devices);
        QCOMPARE(task.EntityState(), Normal);
        QCOMPARE(task.DevicesText(), text);
        QCOMPARE(task.DevicesText().isNull(), text.isNull());

        devices.append(QStringLiteral("new"));
        task.SetDevices(devices);
        QCOMPARE(task.EntityState(), Modified);
        QCOMPARE(task.Devices(), devices);
    }

    void chargesComeBack()
    {
        QVector<Charges> all{{},
                             {{0.0, 0.0}},
                             {{1.0, -0.0}},
                             {{1.0, unknown}, {2.0, infinite}, {3.0, -infinite}},
                             {{-infinite, 1.0}, {infinite, 2.0}},
                             {{5e-324, -5e-324}},
                             {{0.1 + 0.2, 0.1 + 0.2}, {0.3, 0.3}},
                             {{9007199254740993.0, 9223372036854775807.0}, {1e22, 1e308}}};
        QRandomGenerator random(4711);
        for (int run = 0; run < 5000; ++run) {
            Charges charges;
            while (charges.size() < 4) {
                const double voltage = randomDouble(random);
                if (!std::isnan(voltage))
                    charges.insert(voltage, randomDouble(random));
            }
            all.append(charges);
        }
        for (const Charges& charges : qAsConst(all)) {
            const QString text = ChargeMap::toText(charges);
            QVERIFY2(same(ChargeMap::fromText(text), charges), qUtf8Printable(text));
        }
    }

    void storedChargesStay_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<Charges>("charges");
        const auto row = [](const char* name, const QString& text, const Charges& charges) {
            QTest::newRow(name) << text << charges;
        };
        row("null", QString(), {});
        row("empty", QStringLiteral(""), {});
        row("no level", QStringLiteral("{}"), {});
        row("spaced", QStringLiteral("{ \"1000.0\" : 1.50 ,\n\"2e3\":-0.0e1}"), {{1000, 1.5}, {2000, 0}});
        row("texts", QStringLiteral("{\"1000\":\"1.5\",\"2000\":\"nan\",\"3000\":null}"),
            {{1000, 1.5}, {2000, unknown}, {3000, unknown}});
        row("other members", QStringLiteral("{\"unit\":\"pC\",\"1000\":1.5,\"2000\":true,\"nan\":1}"), {{1000, 1.5}});
        row("array", QStringLiteral("[[1000,1.5]]"), {});
        row("broken", QStringLiteral("{\"1000\":1.5"), {});
        row("plain", QStringLiteral("1000=1.5;2000=3"), {});
        row("lone surrogate", QString(QChar(0xd83d)), {});
    }
    void storedChargesStay()
    {
        QFETCH(QString, text);
        QFETCH(Charges, charges);
        PdIecOverview overview;
        overview.setMaxCharges(text);
        overview.setMedCharges(text);
        overview.SetEntityState(Normal);
        overview.setMaxCharges(charges);
        overview.setMedCharges(charges);
        QCOMPARE(overview.EntityState(), Normal);
        QCOMPARE(overview.maxChargesText(), text);
        QCOMPARE(overview.maxChargesText().isNull(), text.isNull());
        QCOMPARE(overview.medChargesText(), text);
        QCOMPARE(overview.medChargesText().isNull(), text.isNull());
        for (auto level = charges.begin(); level != charges.end(); ++level)
            QVERIFY(same(overview.maxChargeAtVoltage(level.key()), level.value()));

        charges.insert(5000, 0.1);
        overview.setMaxCharges(charges);
        QCOMPARE(overview.EntityState(), Modified);
        QVERIFY(same(ChargeMap::fromText(overview.maxChargesText()), charges));
        QCOMPARE(overview.maxCharges().value(QLatin1String("5000")).toDouble(), 0.1);
        QCOMPARE(overview.medChargesText(), text);
    }

    void chargeAtVoltage_data()
    {
        QTest::addColumn<Charges>("charges");
        QTest::addColumn<double>("voltage");
        QTest::addColumn<double>("charge");
        const Charges charges = {{0, 1}, {0.3, 2}, {20400, 3}, {20400.000001, 4}};
        QTest::newRow("exact") << charges << 20400.0 << 3.0;
        QTest::newRow("computed") << charges << 0.1 + 0.2 << 2.0;
        QTest::newRow("nearest") << charges << 20400.0000007 << 4.0;
        QTest::newRow("zero") << charges << -0.0 << 1.0;
        QTest::newRow("close to zero") << charges << 1e-300 << unknown;
        QTest::newRow("close") << charges << 20400.0001 << unknown;
        QTest::newRow("other side") << charges << -20400.0 << unknown;
        QTest::newRow("no voltage") << charges << unknown << unknown;
        QTest::newRow("infinite voltage") << charges << infinite << unknown;
        QTest::newRow("no charges") << Charges() << 20400.0 << unknown;
    }
    void chargeAtVoltage()
    {
        QFETCH(Charges, charges);
        QFETCH(double, voltage);
        QFETCH(double, charge);
        PdIecOverview overview;
        overview.setMaxCharges(charges);
        QVERIFY(same(overview.maxChargeAtVoltage(voltage), charge));
    }
};

DATAACCESS_TEST(PdTextFormsTest)

#include "PdTextFormsTest.moc"
