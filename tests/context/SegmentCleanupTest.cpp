#include "context/ContextDatabase.h"
#include "context/SampleNetwork.h"
#include "repositories/cables/PlainRepositories.h"
#include "repositories/cables/SegmentRepository.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"

#include <QTest>

#include <cmath>

using namespace Cables::Entities;
using namespace DataAccess;
using namespace QOR::Entities::Enumerations;
using namespace TestSupport;
using Context::CableContext;

namespace {

/// Segments of a phase in a short form: "index name length detail date", separated by commas. A length of - is unknown,
/// and the date may be left out. The details: section and section2 with an insulation, joint, default (of joints),
/// wrong (a joint's, with the type of sections), typed (with a type of its own).
struct Network
{
    QString before;
    QString after;
};

const QString s_details[] = {QStringLiteral("section"), QStringLiteral("section2"), QStringLiteral("joint"),
                             QStringLiteral("wrong"),   QStringLiteral("other"),    QStringLiteral("typed")};

std::shared_ptr<SegmentDetail> makeDetail(const QString& name)
{
    const auto types = CableContext::defaultTypes();
    auto detail = std::make_shared<SegmentDetail>();
    detail->SetId(sampleId(name));
    detail->SetName(name);
    const bool isSection = name.startsWith(QLatin1String("section"));
    detail->SetVelocity(isSection ? 166e6 : 0);
    if (isSection)
        detail->SetInsulationId(types.insulations.front()->Id());
    if (name == QLatin1String("typed"))
        detail->SetTypeId(sampleId(QStringLiteral("type")));
    else
        detail->SetTypeId(isSection || name == QLatin1String("wrong") ? types.cableType()->Id()
                                                                      : types.jointType()->Id());
    return detail;
}

QUuid detailId(const QString& name)
{
    if (name == QLatin1String("default"))
        return CableContext::defaultTypes().getSegmentDetailJointDefault()->Id();
    return name == QLatin1String("none") ? QUuid() : sampleId(name);
}

/// The name of a detail; + behind it when its type is that of joints now, and was another one.
QString detailName(const Cables::Entities::Interfaces::ISegment& segment)
{
    const QUuid id = segment.DetailId();
    for (const QString& name : s_details) {
        const bool mayChange = name == QLatin1String("wrong") || name == QLatin1String("typed");
        if (sampleId(name) == id)
            return name + QLatin1String(mayChange && segment.Detail()->Type()->IsJoint() ? "+" : "");
    }
    return id.isNull() ? QStringLiteral("none") : QStringLiteral("default");
}

std::shared_ptr<Segment> makeSegment(const QString& text, int number)
{
    const QStringList words = text.trimmed().split(QLatin1Char(' '));
    auto segment = std::make_shared<Segment>();
    segment->SetId(sampleId(QStringLiteral("segment %1").arg(number)));
    segment->SetPhaseId(sampleId(QStringLiteral("phase")));
    segment->SetIndex(words.at(0).toUInt());
    segment->SetName(words.at(1) == QLatin1String("-") ? QString() : words.at(1));
    if (words.at(2) != QLatin1String("-"))
        segment->SetLength(words.at(2).toDouble());
    segment->SetDetailId(detailId(words.at(3)));
    segment->SetInstallationDate(QDate::fromString(words.value(4), Qt::ISODate));
    return segment;
}

QString describe(const Cables::Entities::Interfaces::ISegment& segment)
{
    const QDate date = segment.InstallationDate();
    return QStringLiteral("%1 %2 %3 %4%5")
        .arg(segment.Index())
        .arg(segment.Name().isEmpty() ? QStringLiteral("-") : segment.Name())
        .arg(std::isnan(segment.Length()) ? QStringLiteral("-") : QString::number(segment.Length()))
        .arg(detailName(segment), date.isValid() ? date.toString(QStringLiteral(" yyyy-MM-dd")) : QString());
}

} // namespace

Q_DECLARE_METATYPE(Network)

class SegmentCleanupTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void networksAreRepairedOnce_data()
    {
        QTest::addColumn<int>("backend");
        QTest::addColumn<Network>("network");
        const auto add = [](const char* name, const char* before, const char* after) {
            const Network network{QString::fromLatin1(before), QString::fromLatin1(after)};
            QTest::addRow("%s", name) << int(DataAccess::Enumerations::SQLite3) << network;
        };
        const auto addSound = [&add](const char* name, const char* network) { add(name, network, network); };
        add("a segment stored three times", "0 a 5 section, 0 a 5 section, 0 a 5 section", "0 a 5 section");
        addSound("another name, length, detail or place",
                 "0 a 5 section, 0 b 5 section, 0 a 6 section, 0 a 5 section2, 1 a 5 section");
        add("unknown lengths are alike", "0 a - section, 0 a - section", "0 a - section");
        addSound("sections and joints", "0 a 5 section, 1 b 0 joint, 2 c 5 section2, 3 - 0 default, 4 d 5 section");
        addSound("two joints side by side", "0 a 5 section, 1 b 0 joint, 2 c 0 joint, 3 d 5 section");
        add("a joint with the detail of a section", "0 a 5 section, 1 - 0 section, 2 c 5 section",
            "0 a 5 section, 1 - 0 default, 2 c 5 section");
        addSound("a section entered without its length",
                 "0 a 5 section, 1 b 0 section, 2 c 5 section, 3 - 0 section 2020-02-29, 4 d 5 section");
        add("a joint without detail", "0 a 5 section, 1 - 0 none, 2 c 5 section",
            "0 a 5 section, 1 - 0 default, 2 c 5 section");
        addSound("the only one with its detail", "0 a 5 section, 1 - 0 section2, 2 c 5 section");
        addSound("a section of unknown length", "0 a 5 section, 1 - - section, 2 c 5 section");
        addSound("a last piece of no length", "0 a 5 section, 1 - 0 section");
        add("a joint stored twice", "0 a 5 section, 1 b 0 joint, 1 - 0.5 joint, 2 c 5 section",
            "0 a 5 section, 1 b 0.5 joint, 2 c 5 section");
        addSound("joints that contradict each other",
                 "0 a 5 section, 1 b 0 joint, 1 c 0 joint, 1 b 0 other, 2 d 5 section");
        add("first made a joint, then found twice", "0 a 5 section, 1 - 0 section, 1 b 0 default, 2 c 5 section",
            "0 a 5 section, 1 b 0 default, 2 c 5 section");
        add("a joint's detail of a section's type", "0 a 5 section, 1 - - wrong, 2 c 5 section",
            "0 a 5 section, 1 - - wrong+, 2 c 5 section");
        add("the same of no length", "0 a 5 section, 1 - 0 wrong, 2 c 5 section",
            "0 a 5 section, 1 - 0 wrong+, 2 c 5 section");
        addSound("a section with that detail", "0 a 5 section, 1 b - wrong, 2 c 5 section");
        addSound("a type of its own", "0 a 5 section, 1 - 0 typed, 2 c 5 section");
        QTest::newRow("on a server") << int(DataAccess::Enumerations::Postgres)
                                     << Network{
                                            QStringLiteral("0 a 5 section, 0 a 5 section, 1 - 0 none, 2 c 5 section"),
                                            QStringLiteral("0 a 5 section, 1 - 0 default, 2 c 5 section")};
    }
    void networksAreRepairedOnce()
    {
        QFETCH(Network, network);
        ContextDatabase database;
        const auto phase = store(database, network.before);

        const LogCapture log;
        const auto context = database.loadedCableContext();
        QStringList after;
        for (const auto& segment : context->Phases().value(phase)->Segments())
            after << describe(*segment);
        QStringList expected;
        for (const QString& text : network.after.split(QLatin1Char(',')))
            expected << text.trimmed();
        after.sort();
        expected.sort();
        QCOMPARE(after, expected);
        // The rest is marked deleted, not gone.
        QCOMPARE(context->Segments().size(), network.before.count(QLatin1Char(',')) + 1);

        // Written at once, and found in order by the next load.
        const QStringList rows = database.cableRows();
        const int messages = log.messages(QtInfoMsg, QStringLiteral("qor.context")).size();
        QCOMPARE(messages > 0, network.before != network.after);
        const auto again = database.loadedCableContext();
        QCOMPARE(TestSupport::describe(*again), TestSupport::describe(*context));
        QCOMPARE(log.messages(QtInfoMsg, QStringLiteral("qor.context")).size(), messages);
        QCOMPARE(database.cableRows(), rows);
    }

    void theOneRatedOrChangedLastIsKept_data()
    {
        QTest::addColumn<QString>("segment");
        QTest::addColumn<QVector<int>>("rated");
        QTest::addColumn<QVector<int>>("kept");
        for (const char* segment : {"0 a 5 section", "0 a 0 joint"}) {
            const QString text = QString::fromLatin1(segment);
            QTest::addRow("%s, changed last", segment) << text << QVector<int>{} << QVector<int>{1};
            QTest::addRow("%s, rated", segment) << text << QVector<int>{2} << QVector<int>{2};
            QTest::addRow("%s, both rated", segment) << text << QVector<int>{0, 2} << QVector<int>{0, 2};
        }
    }
    void theOneRatedOrChangedLastIsKept()
    {
        QFETCH(QString, segment);
        QFETCH(QVector<int>, rated);
        QFETCH(QVector<int>, kept);
        ContextDatabase database(DataAccess::Enumerations::SQLite3);
        const auto idOf = [](int number) { return sampleId(QStringLiteral("segment %1").arg(number)); };
        auto rating = std::make_shared<Rating>();
        rating->SetId(sampleId(QStringLiteral("rating")));
        for (const int number : qAsConst(rated))
            rating->setValue(0, idOf(number).toString(), 1.5);
        store(database, QStringList({segment, segment, segment}).join(QLatin1Char(',')), rating);
        database.worker().run([&idOf](DataAccess::Interfaces::IDatabase& db) {
            db.Exec(QStringLiteral("UPDATE ce_segment SET timestamp = '2030-01-01 00:00:00.000' WHERE id = '%1'")
                        .arg(idOf(1).toString()));
        });
        const auto context = database.loadedCableContext();
        for (int number = 0; number < 3; ++number)
            QCOMPARE(context->Segments().value(idOf(number))->EntityState() != Deleted, kept.contains(number));
    }

private:
    /// Stores the segments past the context, and returns the id of their phase.
    static QUuid store(ContextDatabase& database, const QString& segments,
                       const std::shared_ptr<Rating>& rating = nullptr)
    {
        const auto context = database.cableContext();
        auto phase = std::make_shared<Phase>();
        phase->SetId(sampleId(QStringLiteral("phase")));
        context->attach(phase);
        context->attach(rating);
        auto type = std::make_shared<SegmentType>();
        type->SetId(sampleId(QStringLiteral("type")));
        context->attach(type);
        for (const QString& name : s_details)
            context->attach(makeDetail(name));
        int number = 0;
        for (const QString& text : segments.split(QLatin1Char(',')))
            context->attach(makeSegment(text, number++));
        context->saveChanges();
        return phase->Id();
    }
};

DATAACCESS_TEST(SegmentCleanupTest)

#include "SegmentCleanupTest.moc"
