#include "database/BatchCache.h"
#include "database/DbException.h"
#include "database/Failure.h"
#include "support/DatabaseFixture.h"
#include "support/LogCapture.h"
#include "support/RunningWorker.h"
#include "support/TestMain.h"

#include <QSqlDatabase>
#include <QTest>

using namespace DataAccess;
using Database::Transaction;
using Exceptions::ExecutionException;

/// The guard around a transaction.
class TransactionTest : public TestSupport::DatabaseFixture
{
    Q_OBJECT

    void insert(int value) { m_db->Exec(QStringLiteral("INSERT INTO t VALUES (%1)").arg(value)); }
    int rows() { return scalar("SELECT count(*) FROM t").toInt(); }

public:
    TransactionTest()
        : DatabaseFixture({QStringLiteral("CREATE TABLE t (a INTEGER PRIMARY KEY)")})
    {}

private Q_SLOTS:
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
        exec("COMMIT");
        QCOMPARE(rows(), 2);
    }

    void failedCommitStaysOpen()
    {
        if (!isPostgres())
            exec("PRAGMA foreign_keys = ON");
        exec("CREATE TABLE c (t INTEGER REFERENCES t (a) DEFERRABLE INITIALLY DEFERRED)");
        {
            Transaction transaction = m_db->Transaction();
            insert(1);
            exec("INSERT INTO c VALUES (2)");
            QVERIFY(!transaction.commit() && transaction.isOpen() && !transaction.isUnavailable());
            QVERIFY2(transaction.lastError().contains(QLatin1String("foreign key"), Qt::CaseInsensitive),
                     qUtf8Printable(transaction.lastError()));
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
        exec("CREATE TABLE large (a BLOB)");
        exec("PRAGMA max_page_count = 10");
        const QVariant cache = scalar("PRAGMA cache_size");
        for (const bool isAsked : {true, false}) {
            const Database::BatchCache largeCache(*m_db, 1000);
            Transaction transaction = m_db->Transaction();
            const auto row = m_db->Write(QStringLiteral("INSERT INTO t VALUES (7)"), [] {});
            insert(1);
            QVERIFY_EXCEPTION_THROWN(m_db->Exec(QStringLiteral("INSERT INTO large VALUES (zeroblob(100000))")),
                                     ExecutionException);
            QVERIFY(!isAsked || (transaction.wasLost() && !transaction.isOpen()));
            // What were written now would stay.
            QVERIFY_EXCEPTION_THROWN(insert(2), ExecutionException);
            QVERIFY_EXCEPTION_THROWN(row->run(), ExecutionException);
            QVERIFY_EXCEPTION_THROWN(m_db->Query(), ExecutionException);
            QVERIFY(!transaction.commit() && !transaction.isOpen() && !transaction.lastError().isEmpty());
            QVERIFY_EXCEPTION_THROWN(rows(), ExecutionException);
        }
        QCOMPARE(rows(), 0);
        QCOMPARE(scalar("PRAGMA cache_size"), cache);
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
        Transaction outer = m_db->Transaction();
        insert(1);
        for (const bool isWriting : {false, true}) {
            const TestSupport::LogCapture log;
            const Database::FailureWatch watch;
            Transaction inner = isWriting ? m_db->WriteTransaction() : m_db->Transaction();
            QVERIFY(!inner.isOpen() && !inner.commit() && !inner.lastError().isEmpty());
            QCOMPARE(log.messages(QtCriticalMsg, QStringLiteral("qor.database")).size(), 1);
            QVERIFY(log.contains(inner.lastError()) && watch.reason() == inner.lastError() && !watch.isUnavailable());
        }
        QVERIFY(outer.commit());
        QCOMPARE(rows(), 1);
        // An unread select does not pass for a transaction.
        QSqlQuery& unread = m_db->Query();
        unread.setForwardOnly(true);
        QVERIFY(unread.exec(QStringLiteral("SELECT 1 UNION ALL SELECT 2")) && unread.next());
        QVERIFY(m_db->Transaction().isOpen());
    }

    void writeAfterReadWaits()
    {
        TestSupport::RunningWorker other(m_database->config());
        std::promise<void> hasWritten;
        other.get()->insert([&](Interfaces::IDatabase& db) {
            Transaction transaction = db.Transaction();
            db.Exec(QStringLiteral("INSERT INTO t VALUES (1)"));
            hasWritten.set_value();
            QThread::msleep(300);
            transaction.commit();
        });
        hasWritten.get_future().wait();
        Transaction transaction = m_db->WriteTransaction();
        QVERIFY(rows() <= 1);
        insert(2);
        QVERIFY(transaction.commit());
        other.run([](Interfaces::IDatabase&) {});
        QCOMPARE(rows(), 2);
    }
};

DATAACCESS_TEST(TransactionTest)
#include "TransactionTest.moc"
