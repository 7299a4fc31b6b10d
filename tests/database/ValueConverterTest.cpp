#include "database/DbException.h"
#include "database/backends/sqlite2/Sqlite2Backend.h"
#include "support/DatabaseFixture.h"
#include "support/TestMain.h"

#include <QJsonArray>
#include <QTest>

#include <cmath>
#include <limits>
#include <random>

using namespace DataAccess;
using namespace DataAccess::Enumerations;
using Exceptions::ExecutionException;
using Interfaces::IValueConverter;

namespace {

template <typename T>
constexpr T s_least = std::numeric_limits<T>::lowest();
template <typename T>
constexpr T s_most = std::numeric_limits<T>::max();

/// Whether two values are the same for whoever stores one and reads the other.
template <typename T>
bool same(const T& left, const T& right)
{
    if constexpr (std::is_floating_point_v<T>)
        return (std::isnan(left) && std::isnan(right)) || std::equal_to<T>()(left, right);
    else if constexpr (std::is_same_v<T, QByteArray>)
        return left.isNull() == right.isNull() && left == right;
    else if constexpr (std::is_same_v<T, QDateTime>)
        return left.date() == right.date() && left.time() == right.time();
    else if constexpr (std::is_same_v<T, QImage>)
        return left.convertToFormat(QImage::Format_ARGB32) == right.convertToFormat(QImage::Format_ARGB32);
    else
        return left == right;
}

/// Every character that can be stored, in one text.
QString allCharacters()
{
    QString text;
    for (uint c = 1; c <= 0x10ffff; ++c) {
        if (c == 0xd800)
            c = 0xe000;
        if (c < 0xfffe || c > 0xffff)
            text += QString::fromUcs4(&c, 1);
    }
    return text;
}

/// A date and time as text, of numbers somewhat beyond what there is, at times with a mistake in it.
QString dateText(std::mt19937& random)
{
    const auto below = [&](int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); };
    QString text;
    for (const auto& [end, digits, separator] : {std::tuple(10001, 4, '-'),
                                                 {14, 2, '-'},
                                                 {33, 2, ' '},
                                                 {26, 2, ':'},
                                                 {62, 2, ':'},
                                                 {62, 2, '.'},
                                                 {1000, 3, 'x'}})
        text += QStringLiteral("%1").arg(below(end), digits, 10, QLatin1Char('0')) + QLatin1Char(separator);
    text.truncate(std::array<int, 5>{23, 23, 19, 10, below(24)}[static_cast<size_t>(below(5))]);
    if (below(3) == 0 && !text.isEmpty())
        text.replace(below(text.size()), below(2), QStringLiteral("0123456789-: .T/+").at(below(17)));
    return text;
}

} // namespace

/// What is stored through a converter comes back through it, on every backend, in every time zone and language.
class ValueConverterTest : public TestSupport::DatabaseFixture
{
    Q_OBJECT

    const QString m_placeholder = QStringLiteral(":value");
    QSqlQuery m_row = QSqlQuery(QSqlDatabase());

    std::shared_ptr<IValueConverter> select(const char* statement)
    {
        m_row = m_db->Exec(QLatin1String(statement));
        m_row.next();
        return m_db->Converter(m_row);
    }
    /// Stores @p value in @p column of the only row, and leaves the row to be read.
    template <typename T>
    std::shared_ptr<IValueConverter> store(const char* column, const T& value)
    {
        m_db->Exec(QStringLiteral("DELETE FROM v"));
        QSqlQuery& insert = m_db->Query();
        insert.prepare(QStringLiteral("INSERT INTO v (%1) VALUES (:value)").arg(QLatin1String(column)));
        m_db->Converter(insert)->bindValue(m_placeholder, value);
        m_db->Exec(insert);
        return select(QByteArray("SELECT ").append(column).append(" FROM v").constData());
    }
    template <typename T>
    void roundTrip(const char* column, const std::vector<T>& values)
    {
        for (size_t i = 0; i < values.size(); ++i) {
            T read{};
            store(column, values[i])->value(read, 0);
            QVERIFY2(same(read, values[i]),
                     qPrintable(QStringLiteral("%1: value %2").arg(QLatin1String(column)).arg(i)));
        }
    }
    template <typename T>
    bool isStoredAsNull(const char* column, const T& value)
    {
        store(column, value);
        return scalar(QByteArray("SELECT count(").append(column).append(") FROM v")) == 0;
    }

public:
    ValueConverterTest()
        : DatabaseFixture({})
    {}

private Q_SLOTS:
    void init()
    {
        DatabaseFixture::init();
        const auto types = m_db->Converter();
        m_db->Exec(QStringLiteral("CREATE TABLE v (i2 %1, i4 %2, i8 %3, time %4, flag %5, number %6, text %7, chars %8,"
                                  " bytes %9, day ")
                       .arg(types->type(Integer, 2), types->type(Integer, 4), types->type(Integer, 8),
                            types->type(TimeStamp, 0), types->type(Boolean, 0), types->type(Numeric, 0),
                            types->type(Text, 0), types->type(VarChar, 40), types->type(ByteArray, 0)) +
                   types->type(Date, 0) + QLatin1Char(')'));
        m_db->Exec(QStringLiteral("BEGIN")); // one transaction, as many waits for the disk are slow
    }
    void cleanup()
    {
        m_row = QSqlQuery(QSqlDatabase());
        DatabaseFixture::cleanup();
    }

    void numbers()
    {
        roundTrip<signed char>("i2", {s_least<signed char>, -1, 0, s_most<signed char>});
        roundTrip<short>("i2", {s_least<short>, -1, 0, s_most<short>});
        roundTrip<int>("i4", {s_least<int>, -1, 0, s_most<int>});
        roundTrip<qint64>("i8", {s_least<qint64>, -1, 0, (1LL << 53) + 1, s_most<qint64>});
        roundTrip<bool>("flag", {true, false});
        using Limits = std::numeric_limits<double>;
        roundTrip<double>("number",
                          {-0.0, 0.1, -1.0 / 3, 1e15 + 0.3, s_least<double>, s_most<double>, Limits::min(),
                           Limits::denorm_min(), Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN()});
        QCOMPARE(store("i8", s_most<unsigned int>)->toUint(0), s_most<unsigned int>);
        QCOMPARE(m_db->Converter(m_row)->toInt64(0), qint64(s_most<unsigned int>));
        QCOMPARE(store("i8", static_cast<quint64>(s_most<qint64>))->toInt64(0), s_most<qint64>);
        float single = 0;
        store("number", 0.1)->value(single, 0);
        QCOMPARE(single, 0.1F);
    }

    void texts()
    {
        roundTrip<QString>("text", {QStringLiteral("it's \"quoted\", \\x41 %1 :value ?; -- $1"),
                                    QStringLiteral(" x \r\n"), QStringLiteral(u"\ufeffmark"), QStringLiteral(u"\ufeff"),
                                    QStringLiteral(u"\ufeff\ufeff"), QString(10 << 20, QChar(0xe4)), allCharacters()});
        roundTrip<QString>("chars", {QString(40, QChar(0x6570))});
        const QUuid id = QUuid::createUuid();
        QCOMPARE(store("text", id)->toString(0), id.toString());
        char first = 'x';
        store("chars", QStringLiteral("L1"))->value(first, 0);
        QCOMPARE(first, 'L');
    }

    void bytesAndDocuments()
    {
        QByteArray bytes;
        for (int i = 0; i < 256; ++i)
            bytes.append(static_cast<char>(i));
        roundTrip<QByteArray>(
            "bytes", {bytes, QByteArray(""), QByteArray(1, '\0'), QByteArray("\\x41"), QByteArray(10 << 20, '\xff')});
        QImage image(2000, 1000, QImage::Format_ARGB32);
        for (uint i = 0; i < static_cast<uint>(image.sizeInBytes()); ++i)
            image.bits()[i] = static_cast<uchar>(i * i >> 4); // hardly to be compressed, and of every transparency
        roundTrip<QImage>("text", {image.copy(0, 0, 1, 1), image});
        const QJsonObject inner{{QStringLiteral(u"\u00e4\u6570\U0001f600"), QStringLiteral("\"quoted\"\n\\")},
                                {QStringLiteral("zero"), QString(QChar(0))}};
        roundTrip<QJsonObject>("text",
                               {QJsonObject(), {{QStringLiteral("a"), QJsonArray{inner, 0.1, true, QJsonValue()}}}});
    }

    void dates()
    {
        roundTrip<QDate>(
            "day", {QDate(1, 1, 1), QDate(1582, 10, 4), QDate(1969, 12, 31), QDate(2000, 2, 29), QDate(9999, 12, 31)});
        std::vector<QDateTime> times;
        // Among them the nights in which the clocks of Newfoundland change: hours that there are not, or twice.
        for (const QDate& date : {QDate(1, 1, 1), QDate(1969, 12, 31), QDate(9999, 12, 31), QDate(2010, 3, 14),
                                  QDate(2010, 11, 6), QDate(2010, 11, 7), QDate(2020, 3, 8), QDate(2020, 11, 1)}) {
            for (const QTime& time : {QTime(0, 0), QTime(0, 1), QTime(0, 59, 59), QTime(1, 30), QTime(2, 30),
                                      QTime(23, 30), QTime(23, 59, 59, 999)})
                times.emplace_back(date, time);
        }
        roundTrip<QDateTime>("time", times);
        for (const QDateTime& time : times) {
            // Whatever its zone, the digits are stored; those of a UTC time read back as the same instant.
            const QDateTime instant(time.date(), time.time(), Qt::UTC);
            QCOMPARE(store("time", instant)->toUtcDateTime(0), instant);
            const QDateTime read =
                store("time", QDateTime(time.date(), time.time(), Qt::OffsetFromUTC, 7200))->toDateTime(0);
            QVERIFY(same(read, time) && read.timeSpec() == Qt::LocalTime);
        }
    }

    void timesOfManyRows()
    {
        // Next to each other stand times that are the same instant, or have the same digits, but not both.
        const QTime leftOut(2, 30);
        const QDateTime utc(QDate(2020, 3, 8), leftOut, Qt::UTC);
        const std::vector<QDateTime> times = {utc,
                                              utc,
                                              utc.toOffsetFromUtc(7200),
                                              utc,
                                              QDateTime(utc.date(), leftOut),
                                              QDateTime(utc.date(), leftOut.addSecs(3600)),
                                              QDateTime(),
                                              utc.addMSecs(1)};
        QSqlQuery insert = m_db->Query();
        QVERIFY(insert.prepare(QStringLiteral("INSERT INTO v (i4, time) VALUES (:number, :value)")));
        const auto values = m_db->Converter(insert);
        for (size_t i = 0; i < times.size(); ++i) {
            values->bindValue(QStringLiteral(":number"), static_cast<int>(i));
            values->bindValue(m_placeholder, times[i]);
            m_db->Exec(insert);
        }
        const auto row = select("SELECT time FROM v ORDER BY i4");
        for (const QDateTime& time : times) {
            QVERIFY(same(row->toUtcDateTime(0), time));
            m_row.next();
        }
    }

    void nothing()
    {
        QVERIFY(isStoredAsNull("text", QString()) && !isStoredAsNull("text", QStringLiteral("")));
        QVERIFY(isStoredAsNull("bytes", QByteArray()) && !isStoredAsNull("bytes", QByteArray("")));
        QVERIFY(isStoredAsNull("number", std::nan("")) && isStoredAsNull("text", QImage()));
        QVERIFY(isStoredAsNull("day", QDate()) && isStoredAsNull("time", QDateTime()));
        for (const char* text : {"", "no value", "{\"a\":", "[1]", "iVBORw0KGgo="}) {
            const auto row = store("text", *text == '\0' ? QString() : QString::fromLatin1(text));
            QVERIFY(row->toInt64(0) == 0 && row->toInt16(0) == 0 && row->toUint(0) == 0);
            QVERIFY(!row->toDate(0).isValid() && !row->toDateTime(0).isValid() && !row->toUtcDateTime(0).isValid());
            QVERIFY(row->toImage(0).isNull() && row->toJsonObject(0).isEmpty());
        }
    }

    void refusedValues()
    {
        const auto values = m_db->Converter();
        const QString x = QStringLiteral("x");
        for (const int code : {0, 0xd800, 0xdbff, 0xdc00, 0xdfff, 0xfffe, 0xffff}) {
            const QString character(QChar{code});
            for (const QString& text : {character, x + character, character + x, QChar(0xdc00) + character}) {
                QVERIFY_EXCEPTION_THROWN(values->bindValue(m_placeholder, text), ExecutionException);
                QList<QVariant> list;
                QVERIFY_EXCEPTION_THROWN(values->append(list, text), ExecutionException);
            }
        }
        for (const QDate& date : {QDate(-1, 12, 31), QDate(10000, 1, 1)}) {
            const QDateTime time(date, QTime(0, 0), Qt::UTC);
            QVERIFY_EXCEPTION_THROWN(values->bindValue(m_placeholder, date), ExecutionException);
            QVERIFY_EXCEPTION_THROWN(values->bindValue(m_placeholder, time), ExecutionException);
        }
        QVERIFY_EXCEPTION_THROWN(values->bindValue(m_placeholder, s_most<quint64>), ExecutionException);
    }

    void batches()
    {
        const QStringList texts = {QStringLiteral("a"), QString(), QStringLiteral(u"\ufeffb"), QStringLiteral("'")};
        QSqlQuery& query = m_db->Query();
        QVERIFY(query.prepare(QStringLiteral("INSERT INTO v (i4, i8, text, bytes) VALUES (?, ?, ?, ?)")));
        const auto values = m_db->Converter(query);
        std::array<QList<QVariant>, 4> columns;
        for (int i = 0; i < texts.size(); ++i) {
            values->append(columns[0], i);
            values->append(columns[1], s_most<qint64> - i);
            values->append(columns[2], texts[i]);
            values->append(columns[3], QByteArray(i, '\0'));
        }
        for (const auto& column : columns)
            query.addBindValue(column);
        m_db->ExecBatch(query);
        const auto row = select("SELECT i4, i8, text, bytes FROM v ORDER BY i4");
        for (int i = 0; i < texts.size(); ++i, m_row.next()) {
            QByteArray bytes;
            row->value(bytes, 3);
            QVERIFY(row->toInt32(0) == i && row->toInt64(1) == s_most<qint64> - i);
            QVERIFY(row->toString(2) == texts[i] && bytes == QByteArray(i, '\0'));
        }
    }

    void textsAreReadAsQtReadsThem()
    {
        if (isPostgres())
            return;             // has dates of its own
        std::mt19937 random(7); // NOLINT: the same texts each time
        const QString dateFormat = QStringLiteral("yyyy-MM-dd");
        const QString timeFormat = dateFormat + QStringLiteral(" HH:mm:ss");
        QSqlQuery& query = m_db->Query();
        QVERIFY(query.prepare(QStringLiteral("SELECT :value")));
        const auto row = m_db->Converter(query);
        int valid = 0;
        for (int i = 0; i < 20000; ++i) {
            const QString text = dateText(random);
            row->bindValue(m_placeholder, text);
            QVERIFY(query.exec() && query.next());
            QDateTime expected = QDateTime::fromString(text, timeFormat + QStringLiteral(".zzz"));
            if (!expected.isValid())
                expected = QDateTime::fromString(text, timeFormat);
            const QDateTime read = row->toDateTime(0);
            // Qt does not read the hours that a change of the clocks left out.
            const bool leftOut = read.date().isValid() && !read.isValid();
            QVERIFY2(leftOut || same(read, expected), qUtf8Printable(text));
            QVERIFY2(row->toDate(0) == QDate::fromString(text, dateFormat), qUtf8Printable(text));
            valid += expected.isValid() ? 1 : 0;
        }
        QVERIFY(valid > 2000 && valid < 18000);
    }

    void hexadecimalBytes()
    {
        QSqlQuery& insert = m_db->Query();
        QVERIFY(insert.prepare(QStringLiteral("INSERT INTO v (text) VALUES (:value)")));
        const QByteArray bytes("\x01\xab\x00\xff", 4);
        Converter::SQLite2ValueConverter(insert).bindValue(m_placeholder, bytes);
        m_db->Exec(insert);
        QCOMPARE(select("SELECT text FROM v")->toString(0), QStringLiteral("01ab00ff"));
        QByteArray read;
        QList<QVariant> list;
        Converter::SQLite2ValueConverter(m_row).value(read, 0);
        Converter::SQLite2ValueConverter(m_row).append(list, bytes);
        QCOMPARE(read, bytes);
        QCOMPARE(list, {QVariant(QStringLiteral("01ab00ff"))});
    }

    void imagesOfLegacyFiles()
    {
        QImage image(3, 2, QImage::Format_ARGB32);
        image.fill(Qt::darkCyan);
        const QString text = store("text", image)->toString(0);
        const QString hexadecimal = QString::fromLatin1(text.toLatin1().toHex());
        for (const QString& stored : {text, hexadecimal, hexadecimal.toUpper()}) {
            store("text", stored);
            QVERIFY(same(Converter::SQLite2ValueConverter(m_row).toImage(0), image));
        }
    }

    void columnTypes()
    {
        QStringList texts;
        for (const auto& [kind, size] : std::initializer_list<std::pair<int, unsigned int>>{{Integer, 2},
                                                                                            {Integer, 4},
                                                                                            {Integer, 8},
                                                                                            {Integer, 6},
                                                                                            {TimeStamp, 0},
                                                                                            {TimeStamp, 1},
                                                                                            {Boolean, 0},
                                                                                            {Numeric, 0},
                                                                                            {Text, 0},
                                                                                            {Text, 1},
                                                                                            {Char, 3},
                                                                                            {Char, 0},
                                                                                            {VarChar, 40},
                                                                                            {VarChar, 0},
                                                                                            {ByteArray, 0},
                                                                                            {Date, 0},
                                                                                            {9, 1}}) {
            try {
                texts += m_db->Converter()->type(static_cast<DataType>(kind), size);
            } catch (const ExecutionException& error) {
                texts += QString::fromLatin1(error.what());
            }
        }
        // SQLite asks for fitting sizes, PostgreSQL for none.
        QCOMPARE(texts.join(QLatin1Char(' ')),
                 isPostgres()
                     ? QStringLiteral("SMALLINT INTEGER BIGINT BIGINT TIMESTAMP TIMESTAMP BOOLEAN NUMERIC TEXT "
                                      "TEXT CHAR(3) CHAR(0) VARCHAR(40) VARCHAR(0) BYTEA DATE TEXT")
                     : QStringLiteral("INTEGER INTEGER INTEGER Invalid Integer Size! TEXT Invalid TimeStamp "
                                      "Size! INTEGER REAL TEXT Invalid Text Size! TEXT Invalid Char Size! TEXT "
                                      "Invalid VarChar Size! TEXT TEXT TEXT"));
    }
};

DATAACCESS_TEST(ValueConverterTest)
#include "ValueConverterTest.moc"
