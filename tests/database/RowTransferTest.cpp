#include "database/DbException.h"
#include "support/DatabaseFixture.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"

#include <QDebug>
#include <QTest>

#include <limits>
#include <optional>
#include <random>

using namespace DataAccess;
using Exceptions::ExecutionException;
using Interfaces::IRowReader;
using Interfaces::IRowWriter;
using Interfaces::IValueConverter;

namespace {

/// All that @p row has in @p column, read in every way.
QString everything(const IValueConverter& row, int column)
{
    QByteArray bytes;
    row.value(bytes, column);
    QString text;
    QDebug(&text) << row.toBool(column) << row.toInt16(column) << row.toInt32(column) << row.toInt64(column)
                  << row.toUint(column) << QString::number(row.toDouble(column), 'g', 17) << row.toString(column)
                  << row.toString(column).isNull() << row.toUuid(column) << row.toDate(column)
                  << row.toDateTime(column).date() << row.toDateTime(column).time() << row.toDateTime(column).timeSpec()
                  << row.toUtcDateTime(column) << bytes << bytes.isNull();
    return text;
}

/// What @p reader has, a line a value; at the end what ended it.
QStringList allOf(IRowReader& reader)
{
    QStringList lines;
    while (reader.next()) {
        for (int column = 0; column < reader.row().columnCount(); ++column)
            lines += everything(reader.row(), column);
    }
    return lines << reader.error();
}

/// A time stamp as PostgreSQL prints it: with no more digits of the second than it needs.
QString randomTime(std::mt19937& random)
{
    const auto below = [&](unsigned end) { return static_cast<int>(random() % end); };
    QString text = QDateTime(QDate(1, 1, 1).addDays(below(3652058)), QTime(0, 0).addSecs(below(86400)), Qt::UTC)
                       .toString(Qt::ISODate)
                       .left(19)
                       .replace(QLatin1Char('T'), QLatin1Char(' '));
    const int digits = below(7);
    for (int i = 0; i < digits; ++i)
        text += (i == 0 ? QStringLiteral(".") : QString()) + QString::number(below(10));
    return text;
}

using Bind = std::function<void(IValueConverter&)>;

/// What binds each of @p values.
template <typename... T>
std::vector<Bind> bindings(const T&... values)
{
    return {[values](IValueConverter& row) { row.bindValue(QStringLiteral(":value"), values); }...};
}

} // namespace

/// Rows that go through the databases' own interfaces, be it ahead of the answers to those before them, are those that
/// go through Qt SQL. IDatabase itself uses Qt SQL.
class RowTransferTest : public TestSupport::DatabaseFixture
{
    Q_OBJECT

    std::unique_ptr<IRowWriter> writer(bool native, const QString& statement, std::function<void()> written)
    {
        return native ? m_db->Write(statement, std::move(written))
                      : m_db->IDatabase::Write(statement, std::move(written));
    }

    /// Both readers on @p sql; empty when they agree.
    QString difference(const QString& sql)
    {
        const QStringList native = allOf(*m_db->Read(sql));
        const QStringList qt = allOf(*m_db->IDatabase::Read(sql));
        return native == qt ? QString()
                            : sql + QLatin1String("\n") + native.join(QLatin1Char('\n')) + QLatin1String("\nQt:\n") +
                                  qt.join(QLatin1Char('\n'));
    }

    /// What is in @p column after @p bind has been written twice, or the error.
    QString stored(bool native, const QString& column, const Bind& bind)
    {
        const TestSupport::LogCapture log;
        Database::Transaction transaction = m_db->Transaction();
        try {
            const auto rows = writer(native, QStringLiteral("INSERT INTO v (%1) VALUES (:value)").arg(column), [] {});
            for (int row = 0; row < 2; ++row) {
                bind(rows->values());
                rows->run();
            }
            rows->finish();
        } catch (const ExecutionException& error) {
            return QString::fromLocal8Bit(error.what());
        }
        const QString text = isPostgres() ? QStringLiteral("%1::text") : QStringLiteral("typeof(%1) || quote(%1)");
        QSqlQuery query = m_db->Exec(QStringLiteral("SELECT %1 FROM v").arg(text.arg(column)));
        QStringList lines;
        while (query.next())
            lines += query.isNull(0) ? QStringLiteral("NULL") : query.value(0).toString();
        return lines.join(QLatin1Char('\n'));
    }

    /// The result of writing numbers, of which one is there already: how many were told to be
    /// written, the error, and whether those are not all that is stored.
    QString resultOfBatch(bool native, bool inTransaction, int rows, int duplicate)
    {
        const TestSupport::LogCapture log;
        std::optional<Database::Transaction> transaction;
        if (inTransaction)
            transaction = m_db->Transaction();
        m_db->Exec(QStringLiteral("INSERT INTO k VALUES (%1)").arg(duplicate));
        int written = 0;
        QString error;
        try {
            const auto batch = writer(native, QStringLiteral("INSERT INTO k VALUES (:value)"), [&] { ++written; });
            for (int row = 0; row < rows; ++row) {
                batch->values().bindValue(QStringLiteral(":value"), row);
                batch->run();
            }
            batch->finish();
        } catch (const ExecutionException& failure) {
            error = QString::fromLocal8Bit(failure.what());
        }
        const QStringList messages = log.messages(QtCriticalMsg, QStringLiteral("qor.database"));
        const int stored = error.isEmpty() || !inTransaction ? scalar("SELECT count(*) FROM k").toInt() - 1 : written;
        if (!inTransaction)
            exec("DELETE FROM k");
        return QString::number(written) + error + messages.join(QLatin1Char('\n')) +
               (stored == written ? QString() : QStringLiteral(" not stored"));
    }

public:
    RowTransferTest()
        : DatabaseFixture({QStringLiteral("CREATE TABLE k (a INTEGER PRIMARY KEY)")})
    {}

private Q_SLOTS:
    void readsWhatQtReads()
    {
        QStringList values =
            QStringLiteral("0;-7;1.5;2147483648;-9223372036854775807;NULL;'';'abc';'12';'12.5x';'true';"
                           "'\u00e4\u20ac\U0001f600';'\ufeffx';'2020-02-30';'2020-01-02 03:04:05.678';"
                           "'2020-01-02 03:04:05';'2020-01-02 03:04';'2019-03-10 02:30:00';"
                           "'{12345678-1234-1234-1234-1234567890ab}';'12345678-1234-1234-1234-1234567890ab}x'")
                .split(QLatin1Char(';'));
        const QString others =
            isPostgres()
                ? QStringLiteral(
                      "TRUE;FALSE;NULL::BOOLEAN;7::SMALLINT;-7::BIGINT;-7::INTEGER;NULL::INTEGER;1e-7::NUMERIC;1e300;"
                      "1.5::REAL;'NaN'::NUMERIC;'-Infinity'::FLOAT8;NULL::NUMERIC;'ab'::CHAR(5);'ab'::VARCHAR(5);"
                      "'\\x00ff'::BYTEA;''::BYTEA;NULL::BYTEA;'2020-02-29'::DATE;'12020-02-29'::DATE;"
                      "'0044-03-15 BC'::DATE;'infinity'::DATE;NULL::DATE;NULL::TIMESTAMP;'infinity'::TIMESTAMP;"
                      "'0044-03-15 01:02:03 BC'::TIMESTAMP;'2019-03-10 02:30:00'::TIMESTAMP;'01:02:03'::TIME;"
                      "NULL::TIME;'01:02:03+02'::TIMETZ;'2020-07-02 03:04:05.6+00'::TIMESTAMPTZ;"
                      "'infinity'::TIMESTAMPTZ;'Infinity'::FLOAT4;'NaN'::FLOAT8;7::OID;'now'::REGPROC;'7'::XID;"
                      "'7'::CID;'7.5'::MONEY;'a\u00e4'::NAME;'{1,2}'::INTEGER[];'{}'::JSON;B'101'")
                : QStringLiteral("x'00ff';x'';CAST(x'e4' AS TEXT);CAST(x'c3a461e0' AS TEXT);CAST(x'610062' AS TEXT);"
                                 "1e300;-9e999");
        values += others.split(QLatin1Char(';'));
        std::mt19937 random(11); // NOLINT: the same times each run
        for (int i = 0; i < (isPostgres() ? 500 : 0); ++i)
            values += QStringLiteral("'%1'::TIMESTAMP").arg(randomTime(random));
        // The first row is not read like the others.
        for (const QString& value : qAsConst(values)) {
            const QString rows = QStringLiteral("SELECT %1, 1 UNION ALL SELECT %1, 2 UNION ALL SELECT %1, 3");
            const QString differs = difference(rows.arg(value));
            QVERIFY2(differs.isEmpty(), qUtf8Printable(differs));
        }
        QCOMPARE(difference(QStringLiteral("SELECT 1 WHERE 1 = 2")), QString());
    }

    /// Ids and times with another character at each place: next to the digits and the letters, or of two bytes.
    void readsSpellingsAsQtDoes()
    {
        for (const char* usual : {"{01234567-89AB-cdef-0123-456789abcdef}", "01234567-89AB-cdef-0123-456789abcdef",
                                  "2020-01-02 03:04:05.678", "2020-01-02"}) {
            const QString text = QString::fromLatin1(usual);
            QStringList spellings;
            for (int at = 0; at < text.size(); ++at) {
                for (const QChar other : QStringLiteral("/09:@FG`fg\u00e4"))
                    spellings += QStringLiteral("('%1')").arg(QString(text).replace(at, 1, other));
            }
            const QString differs = difference(QStringLiteral("VALUES ") + spellings.join(QLatin1Char(',')));
            QVERIFY2(differs.isEmpty(), qUtf8Printable(differs));
        }
    }

    void selectsThatFail()
    {
        const TestSupport::LogCapture log;
        const auto errorOf = [this](const QString& sql, bool native) {
            try {
                native ? m_db->Read(sql) : m_db->IDatabase::Read(sql);
            } catch (const ExecutionException& error) {
                return QString::fromLocal8Bit(error.what());
            }
            return QString();
        };
        for (const char* sql : {"SELECT a FROM missing", "no select", "SELECT 1/0"}) {
            const QString text = QString::fromLatin1(sql);
            QCOMPARE(errorOf(text, true), errorOf(text, false));
        }
        const QStringList messages = log.messages(QtCriticalMsg, QStringLiteral("qor.database"));
        QVERIFY(messages.size() >= 4);
        for (int i = 0; i < messages.size(); i += 2)
            QCOMPARE(messages[i], messages.value(i + 1));
    }

    void failureAmongTheRows()
    {
        const QString overflow = QStringLiteral("SELECT 1 UNION ALL SELECT 2 UNION ALL SELECT abs(%1)")
                                     .arg(QStringLiteral("-9223372036854775807 - 1"));
        if (isPostgres()) // where the rows come when all of them are there
            return;
        const auto reader = m_db->Read(overflow);
        QVERIFY(reader->next() && reader->next() && !reader->next() && !reader->next());
        QVERIFY(!reader->error().isEmpty());
        QCOMPARE(difference(overflow), QString());
    }

    void writesWhatQtWrites()
    {
        using namespace Enumerations;
        QStringList columns = {QStringLiteral("c0 SMALLINT")};
        for (const DataType kind : {Integer, TimeStamp, Boolean, Numeric, Text, ByteArray, Date})
            columns +=
                QStringLiteral("c%1 ").arg(columns.size()) + m_db->Converter()->type(kind, kind == Integer ? 8 : 0);
        m_db->Exec(QStringLiteral("CREATE TABLE v (%1)").arg(columns.join(QStringLiteral(", "))));
        const QDateTime time(QDate(2019, 3, 10), QTime(2, 30, 0, 5), Qt::UTC);
        using Limits = std::numeric_limits<double>;
        const std::vector<Bind> values =
            bindings(true, -3, 40000U, std::numeric_limits<qint64>::max(), 2.5, -1e-7, 1e20, Limits::infinity(),
                     Limits::quiet_NaN(), QString(), QStringLiteral(""), QStringLiteral("12"),
                     QStringLiteral("it's \\ \"\u20ac\" :value $1 ?"), QStringLiteral("\ufeff\ufeffx"),
                     QUuid(QStringLiteral("{12345678-1234-1234-1234-1234567890ab}")), QUuid(), QByteArray(),
                     QByteArray(""), QByteArray("\x00\\'\xff", 4), QDate(), QDate(45, 2, 3), time,
                     QDateTime(time.date(), time.time()), QDateTime());
        for (int column = 0; column < columns.size(); ++column) {
            for (std::size_t i = 0; i < values.size(); ++i) {
                const QString name = QStringLiteral("c%1").arg(column);
                const QString native = stored(true, name, values[i]);
                const QString qt = stored(false, name, values[i]);
                // Of a value of another type than the column the server's words differ with the way it came.
                const bool bothFailed = native.contains(QLatin1String("QPSQL")) && qt.contains(QLatin1String("QPSQL"));
                QVERIFY2(bothFailed || native == qt,
                         qUtf8Printable(
                             QStringLiteral("%1, value %2: %3 / %4").arg(columns[column]).arg(i).arg(native, qt)));
            }
        }
    }

    void failsWhereQtFails()
    {
        // More rows than are ever under way, and failures at the edges of what is sent at once.
        for (const auto& [rows, duplicate] :
             {std::pair(1, 0), {3, 1}, {600, 255}, {600, 256}, {600, 599}, {600, 600}}) {
            // Without a transaction each row takes a while.
            for (const bool inTransaction : {true, rows > 3}) {
                const QString native = resultOfBatch(true, inTransaction, rows, duplicate);
                QVERIFY2(native.startsWith(QString::number(duplicate)) &&
                             !native.endsWith(QStringLiteral("not stored")),
                         qUtf8Printable(native));
                QCOMPARE(native, resultOfBatch(false, inTransaction, rows, duplicate));
                QCOMPARE(scalar("SELECT count(*) FROM k").toInt(), 0);
            }
        }
    }

    void rowsUnderWay()
    {
        exec("CREATE TABLE v (a INTEGER, b NUMERIC, c TEXT)");
        Database::Transaction transaction = m_db->Transaction();
        int written = 0;
        {
            const auto rows =
                m_db->Write(QStringLiteral("INSERT INTO v (a, b, c) VALUES (:a, :b, ':b' || :c)"), [&] { ++written; });
            IValueConverter& values = rows->values();
            values.bindValue(QStringLiteral(":c"), QStringLiteral("kept"));
            QVERIFY_EXCEPTION_THROWN(rows->run(), ExecutionException); // where others are not bound
            for (int row = 0; row < 4; ++row) {
                // Values of another type, and NULL, among the rows.
                if (row % 2 == 0)
                    values.bindValue(QStringLiteral(":b"), row == 0 ? std::numeric_limits<double>::quiet_NaN() : 0.5);
                else
                    values.bindValue(QStringLiteral(":b"), QStringLiteral("1.25"));
                values.bindValue(QStringLiteral(":a"), row);
                rows->run();
            }
            QVERIFY_EXCEPTION_THROWN(values.bindValue(QStringLiteral(":d"), 1), ExecutionException);
            rows->finish();
            QCOMPARE(written, 4);
            QCOMPARE(scalar("SELECT count(b) FROM v").toInt(), 3); // between the rows, by another statement
            values.bindValue(QStringLiteral(":a"), 4);
            rows->run();
        }
        QCOMPARE(written, 5);
        QVERIFY(transaction.commit());
        QCOMPARE(scalar("SELECT count(*) FROM v WHERE c = ':bkept'").toInt(), 5);
        QCOMPARE(scalar("SELECT sum(b) FROM v").toDouble(), 4.25);
    }

    void unusableStatements()
    {
        const TestSupport::LogCapture log;
        for (const char* statement : {"INSERT INTO missing VALUES (:a)", "no statement"}) {
            Database::Transaction transaction = m_db->Transaction();
            const auto write = [&] {
                const auto rows = m_db->Write(QString::fromLatin1(statement), [] {});
                rows->run();
                rows->finish();
            };
            QVERIFY_EXCEPTION_THROWN(write(), ExecutionException);
            QVERIFY(transaction.rollback());
            QCOMPARE(scalar("SELECT count(*) FROM k").toInt(), 0);
        }
    }

    void checkedAtTheEnd()
    {
        if (!isPostgres())
            exec("PRAGMA foreign_keys = ON");
        exec("CREATE TABLE c (k INTEGER REFERENCES k (a) DEFERRABLE INITIALLY DEFERRED)");
        int written = 0;
        const auto row = m_db->Write(QStringLiteral("INSERT INTO c VALUES (1)"), [&] { ++written; });
        const auto write = [&] {
            row->run();
            row->finish();
        };
        QVERIFY_EXCEPTION_THROWN(write(), ExecutionException);
        QCOMPARE(written, 0);
    }

    void statementsAmongTheRows_data()
    {
        QTest::addColumn<bool>("fails");
        QTest::newRow("good rows") << false;
        QTest::newRow("a bad row") << true;
    }
    void statementsAmongTheRows()
    {
        QFETCH(bool, fails);
        const std::vector<std::function<void()>> statements = {
            [&] { exec("SELECT 1"); }, [&] { m_db->Read(QStringLiteral("SELECT 1")); },
            [&] { m_db->Exec(m_db->PreparedQuery(QStringLiteral("SELECT 1"))); }, [&] { m_db->Tables(); },
            [&] { m_db->Write(QStringLiteral("INSERT INTO k VALUES (9)"), [] {})->run(); }};
        for (const auto& statement : statements) {
            const TestSupport::LogCapture log;
            int written = 0;
            std::unique_ptr<IRowWriter> rows;
            Database::Transaction transaction = m_db->Transaction();
            rows = m_db->Write(QStringLiteral("INSERT INTO k VALUES (:a)"), [&] { ++written; });
            bool isTold = false;
            try {
                for (const int value : {1, fails ? 1 : 2}) {
                    rows->values().bindValue(QStringLiteral(":a"), value);
                    rows->run();
                }
                statement();
            } catch (const ExecutionException&) {
                isTold = true;
            }
            QCOMPARE(isTold, fails);
            QCOMPARE(written, fails ? 1 : 2);
            if (fails && isPostgres())
                QVERIFY_EXCEPTION_THROWN(rows->finish(), ExecutionException);
            QVERIFY(transaction.rollback());
        }
        // The end of the transaction is one more statement.
        for (int end = 0; end < 3; ++end) {
            const auto rows = m_db->Write(QStringLiteral("INSERT INTO k VALUES (1)"), [] {});
            Database::Transaction transaction = m_db->Transaction();
            rows->run();
            QVERIFY(end == 0 || (end == 1 ? transaction.rollback() : transaction.commit()));
        }
        QCOMPARE(scalar("SELECT count(*) FROM k").toInt(), 1);
    }
};

DATAACCESS_TEST(RowTransferTest)
#include "RowTransferTest.moc"
