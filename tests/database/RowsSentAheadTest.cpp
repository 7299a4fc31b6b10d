#include "database/Database.h"
#include "database/ExecutionException.h"
#include "support/LogCapture.h"
#include "support/Scalar.h"
#include "support/TestDatabase.h"
#include "support/TestMain.h"

#include <QTest>

using namespace DataAccess;
using Exceptions::ExecutionException;
using Interfaces::IRowWriter;
using TestSupport::TestDatabase;

/// Rows that may be sent before the answers of those before them have come: beside other statements, and lost ones.
class RowsSentAheadTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<TestDatabase> m_database;
    std::unique_ptr<Database::Database> m_db;

    bool isPostgres() const { return m_database->type() == Enumerations::Postgres; }
    QVariant scalar(const char* sql) { return TestSupport::scalar(*m_db, sql); }

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

    void checkedAtTheEnd()
    {
        if (!isPostgres())
            m_db->Exec(QStringLiteral("PRAGMA foreign_keys = ON"));
        m_db->Exec(QStringLiteral("CREATE TABLE c (k INTEGER REFERENCES k (a) DEFERRABLE INITIALLY DEFERRED)"));
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
            [&] { m_db->Exec(QStringLiteral("SELECT 1")); }, [&] { m_db->Read(QStringLiteral("SELECT 1")); },
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

    void lostConnection()
    {
        if (!isPostgres())
            return;
        Database::Database other(m_database->config());
        const QString end = QStringLiteral("SELECT pg_terminate_backend(%1)");
        int written = 0;
        {
            Database::Transaction transaction = m_db->Transaction();
            const TestSupport::LogCapture log;
            const auto rows = m_db->Write(QStringLiteral("INSERT INTO k VALUES (:a)"), [&] { ++written; });
            rows->values().bindValue(QStringLiteral(":a"), 1);
            rows->run();
            rows->finish();
            other.Exec(end.arg(scalar("SELECT pg_backend_pid()").toInt()));
            rows->values().bindValue(QStringLiteral(":a"), 2);
            const auto writeMore = [&] {
                rows->run();
                rows->finish();
            };
            QVERIFY_EXCEPTION_THROWN(writeMore(), ExecutionException);
            QCOMPARE(log.messages(QtCriticalMsg, QStringLiteral("qor.database")).size(), 1);
            QVERIFY(transaction.wasLost());
        }
        QCOMPARE(written, 1);
        QCOMPARE(scalar("SELECT count(*) FROM k").toInt(), 0); // over a new connection
    }
};

DATAACCESS_TEST(RowsSentAheadTest)
#include "RowsSentAheadTest.moc"
