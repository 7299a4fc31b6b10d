#include "database/Database.h"
#include "database/DbException.h"
#include "support/LogCapture.h"
#include "support/RunningWorker.h"
#include "support/Scalar.h"
#include "support/TestDatabase.h"
#include "support/TestMain.h"

#include <QSqlDatabase>
#include <QTest>

#include <atomic>
#include <thread>

using namespace DataAccess;
using Interfaces::IDatabase;
using TestSupport::LogCapture;
using TestSupport::RunningWorker;
using TestSupport::scalar;
using TestSupport::TestDatabase;

/// Databases of one connection name: they take turns, on whatever threads they live.
class SharedConnectionTest : public QObject
{
    Q_OBJECT

    const QString m_name = QStringLiteral("one name");

    void makeTable(const TestDatabase& database)
    {
        RunningWorker worker(database.config(m_name));
        worker.run([](IDatabase& db) { db.Exec(QStringLiteral("CREATE TABLE t (writer INTEGER, round INTEGER)")); });
    }
    static int rows(IDatabase& db) { return scalar(db, "SELECT count(*) FROM t").toInt(); }
    /// Whether Qt had something to say, for example of a connection that belongs to another thread.
    static bool qtWarned(const LogCapture& log)
    {
        return !log.messages(QtWarningMsg, QStringLiteral("default")).isEmpty();
    }

private Q_SLOTS:
    void transactionsDoNotMix_data() { TestSupport::addBackends(); }
    void transactionsDoNotMix()
    {
        constexpr int rounds = 40;
        const TestDatabase database;
        makeTable(database);
        const auto write = [&](int writer) {
            RunningWorker worker(database.config(m_name));
            for (int round = 0; round < rounds; ++round) {
                worker.get()->insert([=](IDatabase& db) {
                    Database::Transaction transaction = db.Transaction();
                    for (int row = 0; row < 5; ++row) {
                        db.Exec(QStringLiteral("INSERT INTO t VALUES (%1, %2)").arg(writer).arg(round));
                        std::this_thread::yield();
                    }
                    if (round % 2 == 0)
                        transaction.commit();
                });
            }
            worker.run([](IDatabase&) {}); // the jobs before have run
        };
        std::thread other(write, 1);
        write(2);
        other.join();
        Database::Database db(database.config());
        QCOMPARE(scalar(db, "SELECT count(*) FROM t WHERE writer = 1 AND round % 2 = 0").toInt(), 5 * rounds / 2);
        QCOMPARE(rows(db), 2 * 5 * rounds / 2);
    }

    void oneAfterTheOther_data() { TestSupport::addBackends(); }
    void oneAfterTheOther()
    {
        const TestDatabase database;
        makeTable(database);
        const LogCapture log;
        const auto use = [&](IDatabase& db) {
            return rows(db) == 0 && QSqlDatabase::database(m_name, false).isValid(); // which Qt tells its thread only
        };
        for (int i = 0; i < 3; ++i)
            QVERIFY(RunningWorker(database.config(m_name)).run(use));
        // And on this thread, after the threads of the others have ended.
        Database::Database here(database.config(m_name));
        QVERIFY(use(here));
        QVERIFY(log.contains(QStringLiteral("Using existing connection \"%1\"").arg(m_name)) && !qtWarned(log));
    }

    void oneEndsBeforeTheOther_data() { TestSupport::addBackends(); }
    void oneEndsBeforeTheOther()
    {
        const TestDatabase database;
        makeTable(database);
        RunningWorker stays(database.config(m_name));
        {
            RunningWorker goes(database.config(m_name));
            QCOMPARE(goes.run(rows), 0);
            QVERIFY(stays.run([](IDatabase& db) { return db.IsOpen() && db.Disconnect(); }));
            QCOMPARE(goes.run(rows), 0);
        }
        QVERIFY(stays.run([](IDatabase& db) { return db.IsOpen(); }));
        QCOMPARE(stays.run(rows), 0);
    }

    void nameInUseForAnotherDatabase()
    {
        const TestDatabase first(Enumerations::SQLite3);
        const TestDatabase second(Enumerations::Postgres);
        makeTable(first);
        {
            const RunningWorker inUse(first.config(m_name));
            const LogCapture log;
            RunningWorker refused(second.config(m_name));
            QVERIFY(log.contains(QStringLiteral("Connection name in use for another database: \"%1\"").arg(m_name)));
            QVERIFY_EXCEPTION_THROWN(refused.run(rows), Exceptions::InvalidDbException);
        }
        makeTable(second);
        QCOMPARE(RunningWorker(first.config(m_name)).run(rows), 0);
    }

    void applicationRegistersAndRemoves()
    {
        const TestDatabase database(Enumerations::SQLite3);
        makeTable(database);
        const auto config = database.config();
        QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), config->ConnectionName()).setDatabaseName(database.name());
        QCOMPARE(RunningWorker(config).run(rows), 0);
        QSqlDatabase::removeDatabase(config->ConnectionName());
        QCOMPARE(RunningWorker(config).run(rows), 0);
    }

    void manyComeAndGoAtOnce()
    {
        const TestDatabase first(Enumerations::SQLite3);
        const TestDatabase second(Enumerations::SQLite3);
        makeTable(first);
        makeTable(second);
        const LogCapture log;
        std::atomic<int> failures = 0;
        const auto comeAndGo = [&](const TestDatabase& database) {
            for (int i = 0; i < 25; ++i) {
                // By turns the name that all use, for two files, and one of its own.
                RunningWorker worker(database.config(i % 2 == 0 ? m_name : QString()));
                try {
                    failures += worker.run(rows);
                } catch (const Exceptions::InvalidDbException&) {
                    failures += i % 2; // the name is in use for the other file
                }
            }
        };
        std::thread one(comeAndGo, std::cref(first));
        std::thread two(comeAndGo, std::cref(second));
        comeAndGo(first);
        one.join();
        two.join();
        QCOMPARE(failures.load(), 0);
        QVERIFY(!qtWarned(log));
    }
};

DATAACCESS_TEST(SharedConnectionTest)
#include "SharedConnectionTest.moc"
