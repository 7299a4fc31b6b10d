#include "database/Database.h"
#include "database/ExecutionException.h"
#include "support/Scalar.h"
#include "support/TestDatabase.h"
#include "support/TestMain.h"

#include <QSqlDatabase>
#include <QTest>

using namespace DataAccess;
using Database::Transaction;
using Exceptions::ExecutionException;
using TestSupport::TestDatabase;

/// The guard around a transaction.
class TransactionTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<TestDatabase> m_database;
    std::unique_ptr<Database::Database> m_db;

    bool isPostgres() const { return m_database->type() == Enumerations::Postgres; }
    void insert(int value) { m_db->Exec(QStringLiteral("INSERT INTO t VALUES (%1)").arg(value)); }
    int rows() { return TestSupport::scalar(*m_db, "SELECT count(*) FROM t").toInt(); }

private Q_SLOTS:
    void initTestCase_data() { TestSupport::addBackends(); }
    void init()
    {
        QFETCH_GLOBAL(int, backend);
        m_database = std::make_unique<TestDatabase>(static_cast<Enumerations::DatabaseType>(backend));
        m_db = std::make_unique<Database::Database>(m_database->config());
        m_db->Exec(QStringLiteral("CREATE TABLE t (a INTEGER PRIMARY KEY)"));
    }
    void cleanup()
    {
        m_db.reset();
        m_database.reset();
    }

    void endsOnce()
    {
        for (const bool commit : {false, true}) {
            {
                const Transaction abandoned = m_db->Transaction();
                insert(1);
            }
            QCOMPARE(rows(), 0);
            Transaction transaction = m_db->Transaction();
            insert(1);
            QVERIFY(commit ? transaction.commit() : transaction.rollback());
            QVERIFY(!transaction.isOpen() && !transaction.commit() && !transaction.rollback() &&
                    !transaction.wasLost());
            QCOMPARE(rows(), commit ? 1 : 0);
        }
    }

    void movedGuards()
    {
        {
            Transaction first = m_db->Transaction();
            insert(1);
            Transaction second(std::move(first));
            // NOLINTNEXTLINE(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
            QVERIFY(!first.isOpen() && !first.commit());
            first = std::move(second);
            QVERIFY(first.commit());
            // What a guard loses by being assigned to is left to the connection, neither committed nor rolled back.
            Transaction third = m_db->Transaction();
            insert(2);
            third = std::move(first);
            QVERIFY(!third.isOpen());
        }
        m_db->Exec(QStringLiteral("COMMIT"));
        QCOMPARE(rows(), 2);
    }

    void failedCommitStaysOpen()
    {
        if (!isPostgres())
            m_db->Exec(QStringLiteral("PRAGMA foreign_keys = ON"));
        m_db->Exec(QStringLiteral("CREATE TABLE c (t INTEGER REFERENCES t (a) DEFERRABLE INITIALLY DEFERRED)"));
        {
            Transaction transaction = m_db->Transaction();
            insert(1);
            m_db->Exec(QStringLiteral("INSERT INTO c VALUES (2)"));
            QVERIFY(!transaction.commit() && transaction.isOpen());
        }
        QCOMPARE(rows(), 0);
        Transaction next = m_db->Transaction();
        insert(1);
        QVERIFY(next.commit());
    }

    void failedStatementKeepsIt()
    {
        {
            Transaction transaction = m_db->Transaction();
            insert(1);
            QVERIFY_EXCEPTION_THROWN(insert(1), ExecutionException);
            QVERIFY(!transaction.wasLost() && transaction.isOpen());
            // PostgreSQL commits nothing after a failed statement, whatever it is asked for.
            QCOMPARE(transaction.commit(), !isPostgres());
        }
        QCOMPARE(rows(), isPostgres() ? 0 : 1);
    }

    void fullDiskLosesIt()
    {
        if (isPostgres())
            return; // keeps it, as after any failed statement
        m_db->Exec(QStringLiteral("CREATE TABLE large (a BLOB)"));
        m_db->Exec(QStringLiteral("PRAGMA max_page_count = 10"));
        Transaction transaction = m_db->Transaction();
        insert(1);
        QVERIFY_EXCEPTION_THROWN(m_db->Exec(QStringLiteral("INSERT INTO large VALUES (zeroblob(100000))")),
                                 ExecutionException);
        QVERIFY(transaction.wasLost() && !transaction.isOpen() && !transaction.commit());
        QCOMPARE(rows(), 0);
        QVERIFY(m_db->Transaction().isOpen());
    }

    void cannotBeStarted()
    {
        QSqlDatabase invalid;
        for (QSqlDatabase* db : {&invalid, static_cast<QSqlDatabase*>(nullptr)}) {
            Transaction transaction(db);
            QVERIFY(!transaction.isOpen() && !transaction.commit() && !transaction.rollback() &&
                    !transaction.wasLost());
        }
        const Transaction outer = m_db->Transaction();
        QVERIFY(isPostgres() || !m_db->Transaction().isOpen()); // SQLite has no nested ones
    }
};

DATAACCESS_TEST(TransactionTest)
#include "TransactionTest.moc"
