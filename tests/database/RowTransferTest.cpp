#include "database/Database.h"
#include "database/ExecutionException.h"
#include "support/LogCapture.h"
#include "support/Scalar.h"
#include "support/TestDatabase.h"
#include "support/TestMain.h"

#include <QTest>
#include <QUuid>

#include <limits>
#include <optional>
#include <random>

using namespace DataAccess;
using Exceptions::ExecutionException;
using Interfaces::IRowReader;
using Interfaces::IRowWriter;
using Interfaces::IValueConverter;
using TestSupport::TestDatabase;

namespace {

/// All that @p row has in @p column, read in every way.
QString everything(const IValueConverter& row, int column)
{
    const QDateTime utc = row.toUtcDateTime(column);
    const QDateTime local = row.toDateTime(column);
    QByteArray bytes;
    row.value(bytes, column);
    const QString text = row.toString(column);
    return QStringList({QString::number(row.toBool(column)), QString::number(row.toInt16(column)),
                        QString::number(row.toInt32(column)), QString::number(row.toInt64(column)),
                        QString::number(row.toUint(column)), QString::number(row.toDouble(column), 'g', 17), text,
                        QString::number(text.isNull()), row.toUuid(column).toString(),
                        row.toDate(column).toString(Qt::ISODate), local.date().toString(Qt::ISODate),
                        local.time().toString(Qt::ISODateWithMs), QString::number(local.timeSpec()),
                        utc.toString(Qt::ISODateWithMs), QString::fromLatin1(bytes.toHex()),
                        QString::number(bytes.isNull())})
        .join(QLatin1Char('|'));
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

template <typename T>
Bind binding(const T& value)
{
    return [value](IValueConverter& values) { values.bindValue(QStringLiteral(":value"), value); };
}

} // namespace

/// Rows that go through the databases' own interfaces are those that go through Qt SQL. IDatabase itself uses Qt SQL.
class RowTransferTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<TestDatabase> m_database;
    std::unique_ptr<Database::Database> m_db;

    bool isPostgres() const { return m_database->type() == Enumerations::Postgres; }
    QVariant scalar(const char* sql) { return TestSupport::scalar(*m_db, sql); }

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
            m_db->Exec(QStringLiteral("DELETE FROM k"));
        return QString::number(written) + error + messages.join(QLatin1Char('\n')) +
               (stored == written ? QString() : QStringLiteral(" not stored"));
    }

private Q_SLOTS:
    void initTestCase_data() { TestSupport::addBackends(); }
    void init()
    {
        QFETCH_GLOBAL(int, backend);
        m_database = std::make_unique<TestDatabase>(static_cast<Enumerations::DatabaseType>(backend));
        m_db = std::make_unique<Database::Database>(m_database->config());
        m_db->Exec(QStringLiteral("CREATE TABLE k (a INTEGER PRIMARY KEY)"));
    }
    void cleanup()
    {
        m_db.reset();
        m_database.reset();
    }

    void readsWhatQtReads()
    {
        QStringList values = {QStringLiteral("0"),
                              QStringLiteral("-7"),
                              QStringLiteral("1.5"),
                              QStringLiteral("2147483648"),
                              QStringLiteral("-9223372036854775807"),
                              QStringLiteral("NULL"),
                              QStringLiteral("''"),
                              QStringLiteral("'abc'"),
                              QStringLiteral("'12'"),
                              QStringLiteral("'12.5x'"),
                              QStringLiteral("'true'"),
                              QStringLiteral("'\u00e4\u20ac\U0001f600'"),
                              QStringLiteral("'\ufeffx'"),
                              QStringLiteral("'2020-02-30'"),
                              QStringLiteral("'%1'").arg(QUuid::createUuid().toString()),
                              QStringLiteral("'%1x'").arg(QUuid::createUuid().toString().mid(1)),
                              QStringLiteral("'2020-01-02 03:04:05.678'"),
                              QStringLiteral("'2020-01-02 03:04:05'"),
                              QStringLiteral("'2020-01-02 03:04'"),
                              QStringLiteral("'2019-03-10 02:30:00'")};
        if (isPostgres()) {
            values << QStringLiteral("TRUE") << QStringLiteral("FALSE") << QStringLiteral("NULL::BOOLEAN")
                   << QStringLiteral("7::SMALLINT") << QStringLiteral("-7::BIGINT") << QStringLiteral("-7::INTEGER")
                   << QStringLiteral("NULL::INTEGER") << QStringLiteral("1e-7::NUMERIC") << QStringLiteral("1e300")
                   << QStringLiteral("1.5::REAL") << QStringLiteral("'NaN'::NUMERIC")
                   << QStringLiteral("'-Infinity'::FLOAT8") << QStringLiteral("NULL::NUMERIC")
                   << QStringLiteral("'ab'::CHAR(5)") << QStringLiteral("'ab'::VARCHAR(5)")
                   << QStringLiteral("'\\x00ff'::BYTEA") << QStringLiteral("''::BYTEA") << QStringLiteral("NULL::BYTEA")
                   << QStringLiteral("'2020-02-29'::DATE") << QStringLiteral("'12020-02-29'::DATE")
                   << QStringLiteral("'0044-03-15 BC'::DATE") << QStringLiteral("'infinity'::DATE")
                   << QStringLiteral("NULL::DATE") << QStringLiteral("NULL::TIMESTAMP")
                   << QStringLiteral("'infinity'::TIMESTAMP") << QStringLiteral("'0044-03-15 01:02:03 BC'::TIMESTAMP")
                   << QStringLiteral("'2019-03-10 02:30:00'::TIMESTAMP") << QStringLiteral("'01:02:03'::TIME")
                   << QStringLiteral("NULL::TIME") << QStringLiteral("'01:02:03+02'::TIMETZ")
                   << QStringLiteral("'2020-07-02 03:04:05.6+00'::TIMESTAMPTZ")
                   << QStringLiteral("'infinity'::TIMESTAMPTZ") << QStringLiteral("'Infinity'::FLOAT4")
                   << QStringLiteral("'NaN'::FLOAT8") << QStringLiteral("7::OID") << QStringLiteral("'now'::REGPROC")
                   << QStringLiteral("'7'::XID") << QStringLiteral("'7'::CID") << QStringLiteral("'7.5'::MONEY")
                   << QStringLiteral("'a\u00e4'::NAME") << QStringLiteral("'{1,2}'::INTEGER[]")
                   << QStringLiteral("'{}'::JSON") << QStringLiteral("B'101'");
            std::mt19937 random(11); // NOLINT: the same times each run
            for (int i = 0; i < 500; ++i)
                values += QStringLiteral("'%1'::TIMESTAMP").arg(randomTime(random));
        } else {
            values << QStringLiteral("x'00ff'") << QStringLiteral("x''") << QStringLiteral("CAST(x'e4' AS TEXT)")
                   << QStringLiteral("CAST(x'c3a461e0' AS TEXT)") << QStringLiteral("CAST(x'610062' AS TEXT)")
                   << QStringLiteral("1e300") << QStringLiteral("-9e999");
        }
        // The first row is not read like the others.
        for (const QString& value : qAsConst(values)) {
            const QString rows = QStringLiteral("SELECT %1, 1 UNION ALL SELECT %1, 2 UNION ALL SELECT %1, 3");
            const QString differs = difference(rows.arg(value));
            QVERIFY2(differs.isEmpty(), qUtf8Printable(differs));
        }
        QCOMPARE(difference(QStringLiteral("SELECT 1 WHERE 1 = 2")), QString());
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
        QStringList columns;
        const auto converter = m_db->Converter();
        for (const auto& [kind, size] :
             std::vector<std::pair<Enumerations::DataType, unsigned int>>{{Enumerations::Integer, 2},
                                                                          {Enumerations::Integer, 8},
                                                                          {Enumerations::TimeStamp, 0},
                                                                          {Enumerations::Boolean, 0},
                                                                          {Enumerations::Numeric, 0},
                                                                          {Enumerations::Text, 0},
                                                                          {Enumerations::ByteArray, 0},
                                                                          {Enumerations::Date, 0}})
            columns += QStringLiteral("c%1 %2").arg(columns.size()).arg(converter->type(kind, size));
        m_db->Exec(QStringLiteral("CREATE TABLE v (%1)").arg(columns.join(QStringLiteral(", "))));
        const QDateTime time(QDate(2019, 3, 10), QTime(2, 30, 0, 5), Qt::UTC);
        const std::vector<Bind> values = {binding(true),
                                          binding(-3),
                                          binding(40000U),
                                          binding(std::numeric_limits<qint64>::max()),
                                          binding(2.5),
                                          binding(-1e-7),
                                          binding(1e20),
                                          binding(std::numeric_limits<double>::infinity()),
                                          binding(std::numeric_limits<double>::quiet_NaN()),
                                          binding(QString()),
                                          binding(QStringLiteral("")),
                                          binding(QStringLiteral("12")),
                                          binding(QStringLiteral("it's \\ \"\u20ac\" :value $1 ?")),
                                          binding(QStringLiteral("\ufeff\ufeffx")),
                                          binding(QUuid(QStringLiteral("{12345678-1234-1234-1234-1234567890ab}"))),
                                          binding(QUuid()),
                                          binding(QByteArray()),
                                          binding(QByteArray("")),
                                          binding(QByteArray("\x00\\'\xff", 4)),
                                          binding(QDate()),
                                          binding(QDate(45, 2, 3)),
                                          binding(time),
                                          binding(QDateTime(time.date(), time.time())),
                                          binding(QDateTime())};
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

    void rowsThatAreNotThere()
    {
        for (const bool native : {true, false}) {
            QVector<bool> touched;
            std::unique_ptr<IRowWriter> rows;
            Database::Transaction transaction = m_db->Transaction();
            m_db->Exec(QStringLiteral("INSERT INTO k VALUES (1), (3)"));
            rows = writer(native, QStringLiteral("UPDATE k SET a = 10 * a WHERE a = :value"),
                          [&] { touched.append(rows->touchedRow()); });
            for (const int value : {1, 2, 3}) {
                rows->values().bindValue(QStringLiteral(":value"), value);
                rows->run();
            }
            rows->finish();
            QCOMPARE(touched, (QVector<bool>{true, false, true}));
            rows.reset();
        }
    }

    void rowsUnderWay()
    {
        m_db->Exec(QStringLiteral("CREATE TABLE v (a INTEGER, b NUMERIC, c TEXT)"));
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
};

DATAACCESS_TEST(RowTransferTest)
#include "RowTransferTest.moc"
