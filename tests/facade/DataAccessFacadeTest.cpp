#include "database/DbException.h"
#include "database/DbWorker.h"
#include "facade/FacadeFixture.h"
#include "migration/editor/EditorMigrationManager.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"

#include <QSignalSpy>
#include <QTest>

#include <atomic>
#include <malloc.h>
#include <stdexcept>
#include <thread>

using namespace DataAccess;
using namespace TestSupport;

namespace {

/// A configuration that fails late: when the repositories are made.
class FaultyConfig : public Database::DatabaseConfig
{
public:
    Enumerations::LoadingStrategies LoadingStrategy() override { throw std::runtime_error("no strategy"); }
};

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int rounds = 20;
#else
constexpr int rounds = 200;
#endif

} // namespace

/// How long databases are open, and what becomes of their jobs and threads.
class DataAccessFacadeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_threads = threadCount(); }

    void oneDatabaseForEachConfiguration_data() { addBackends(); }
    void oneDatabaseForEachConfiguration()
    {
        const TestDatabase database;
        const auto facade = DataAccessFacade::Instance();
        const auto config = database.config();
        QVERIFY(!facade->GetRepositories(config));
        facade->RemoveDatabase(config);
        facade->RemoveDatabase(nullptr);

        const auto manager = facade->AddDatabase(config);
        QCOMPARE(facade->AddDatabase(config), manager);
        QCOMPARE(facade->GetRepositories(config), manager);
        const auto equal = database.config(config->ConnectionName());
        const auto other = facade->AddDatabase(equal);
        QVERIFY(other && other != manager);
        manager->EditorRepositories()->OwnerRepository()->Insert({makeOwner()});
        QCOMPARE(other->EditorRepositories()->OwnerRepository()->Count(), 1U);

        facade->RemoveDatabase(config);
        QVERIFY(!facade->GetRepositories(config));
        QCOMPARE(other->EditorRepositories()->OwnerRepository()->Count(), 1U);
        facade->RemoveDatabase(equal);
    }

    void everyDatabaseHasTheDefaultTypes_data() { addBackends(); }
    void everyDatabaseHasTheDefaultTypes()
    {
        const TestDatabase database;
        const auto facade = DataAccessFacade::Instance();
        for (int round = 0; round < 2; ++round) {
            const auto config = database.config();
            QVERIFY(facade->AddDatabase(config));
            facade->RemoveDatabase(config);
            const QStringList counts{QStringLiteral(
                "SELECT (SELECT count(*) FROM ce_insulation) || ' ' || (SELECT count(*) FROM ce_segmenttype) || ' ' || "
                "(SELECT count(*) FROM ce_switchgear) || ' ' || (SELECT count(*) FROM ce_termination) || ' ' || "
                "(SELECT count(*) FROM ce_segment_detail)")};
            QCOMPARE(execute(database, counts).toString(), QStringLiteral("8 2 5 6 16"));
            execute(database, "UPDATE ce_insulation SET name = 'mine' WHERE name = 'PVC'");
        }
        QCOMPARE(execute(database, "SELECT count(*) FROM ce_insulation WHERE name = 'mine'").toInt(), 1);
        const auto versions = facade->GetVersions();
        QCOMPARE(versions.size(), 2);
        QCOMPARE(versions.value(QStringLiteral("CablesVersion")),
                 QStringLiteral("1.3.%1").arg(Manager::EditorMigrationManager().ExpectedVersion()));
    }

    void anExceptionLeavesNothing()
    {
        const TestDatabase database(Enumerations::SQLite3);
        const auto facade = DataAccessFacade::Instance();
        const auto config = std::make_shared<FaultyConfig>();
        config->SetConnectionName(QStringLiteral("faulty"));
        config->SetDatabaseName(database.name());
        config->SetType(Enumerations::SQLite3);
        QVERIFY_EXCEPTION_THROWN(facade->AddDatabase(config), std::runtime_error);
        QVERIFY_EXCEPTION_THROWN(facade->AddDatabase(nullptr), std::invalid_argument);
        QVERIFY(!facade->GetRepositories(config));
        QTRY_VERIFY(threadCount() <= m_threads);
    }

    void aNewerSchemaIsOpenedAndLeftAlone_data() { addBackends(); }
    void aNewerSchemaIsOpenedAndLeftAlone()
    {
        const TestDatabase database;
        const auto facade = DataAccessFacade::Instance();
        const auto config = database.config();
        QVERIFY(facade->AddDatabase(config));
        facade->RemoveDatabase(config);
        execute(database, "UPDATE feature_defaults SET value = '1000'; DELETE FROM ce_insulation;"
                          "INSERT INTO ce_owner (id) VALUES ('{AAAAAAAA-0000-4000-8000-00000000000A}')");
        const QSignalSpy newer(facade.get(), &DataAccessFacade::migrationError);
        const LogCapture log;
        const auto manager = facade->AddDatabase(config);
        QVERIFY(manager);
        manager->CableContext()->reload();
        facade->RemoveDatabase(config);
        QCOMPARE(newer.count(), 2);
        QCOMPARE(newer.first().first().toString(), QStringLiteral("Database newer than this: CablesVersion"));
        QCOMPARE(newer.last().first().toString(), QStringLiteral("Database newer than this: PdVersion"));
        QVERIFY(!log.messages(QtWarningMsg, QStringLiteral("qor.context")).isEmpty());
        QCOMPARE(execute(database, "SELECT count(*) FROM ce_insulation").toInt(), 0);
        QCOMPARE(execute(database, "SELECT count(*) FROM ce_owner WHERE id LIKE '%{AAAAAAAA%'").toInt(), 1);
    }

    void queuedJobsFinishAndLaterOnesFail_data() { addBackends(); }
    void queuedJobsFinishAndLaterOnesFail()
    {
        const TestDatabase database;
        const auto facade = DataAccessFacade::Instance();
        const auto config = database.config();
        const auto manager = facade->AddDatabase(config);
        const auto owners = manager->EditorRepositories()->OwnerRepository();
        Database::Task<bool> onItsThread([&](Interfaces::IDatabase&) {
            facade->RemoveDatabase(config);
            return !facade->AddDatabase(database.config()) && facade->GetRepositories(config) == manager;
        });
        manager->dbWorker()->insert(onItsThread.toJob());
        QVERIFY(onItsThread.Result());
        manager->dbWorker()->insert([](Interfaces::IDatabase&) { QThread::msleep(50); });
        std::vector<std::unique_ptr<Database::Task<bool>>> tasks;
        tasks.reserve(20);
        while (tasks.size() < 20)
            tasks.emplace_back(owners->InsertAsync({makeOwner()}));
        const auto context = manager->CableContext();
        facade->RemoveDatabase(config);
        for (const auto& task : tasks)
            QVERIFY(task->Result());

        const LogCapture log;
        QVERIFY_EXCEPTION_THROWN(owners->Count(), Exceptions::NotOpenException);
        const QSignalSpy failed(context.get(), &Context::CableContext::loadingFailed);
        context->reload();
        QCOMPARE(failed.count(), 1);
        const auto late = makeOwner();
        context->attach(late);
        context->saveChanges();
        manager->PdContext()->reload();
        QCOMPARE(late->EntityState(), QOR::Entities::Enumerations::New);
        QCOMPARE(execute(database, "SELECT count(*) FROM ce_owner").toInt(), 20);
    }

    /// A job of another thread that comes behind the last one must neither run nor be cut short.
    void noJobBeginsOnceTheLastHasRun()
    {
        const TestDatabase database(Enumerations::SQLite3);
        const auto facade = DataAccessFacade::Instance();
        const auto config = database.config();
        const auto manager = facade->AddDatabase(config);
        const auto queue = manager->dbWorker()->queue();
        queue->push([](Interfaces::IDatabase&) { QThread::msleep(800); });
        std::atomic<bool> hasBegun{false};
        Database::Task<bool> late([&](Interfaces::IDatabase&) {
            hasBegun = true;
            QThread::sleep(4);
            return true;
        });
        std::thread other([&] {
            while (facade->GetRepositories(config))
                std::this_thread::yield();
            QThread::msleep(400);
            queue->push(late.toJob());
        });
        const LogCapture log;
        facade->RemoveDatabase(config);
        other.join();
        QVERIFY_EXCEPTION_THROWN(late.Result(), Exceptions::NotOpenException);
        QVERIFY(!hasBegun);
        QCOMPARE(log.messages(QtCriticalMsg, QStringLiteral("qor.facade")), QStringList());
    }

    /// Not even when the application has closed the queue by itself.
    void removalNeverHangs()
    {
        const TestDatabase database(Enumerations::SQLite3);
        const auto facade = DataAccessFacade::Instance();
        const auto config = database.config();
        facade->AddDatabase(config)->dbWorker()->queue()->close();
        facade->RemoveDatabase(config);
        facade->AddDatabase(config)->dbWorker()->thread()->quit();
        facade->RemoveDatabase(config);
        QVERIFY(facade->AddDatabase(config));
        facade->RemoveDatabase(config);
    }

    void nothingGrowsOverManyRounds_data() { addBackends(); }
    void nothingGrowsOverManyRounds()
    {
        const TestDatabase database;
        const auto facade = DataAccessFacade::Instance();
        const auto config = database.config();
        std::size_t bytes = 0;
        for (int round = 0; round < rounds; ++round) {
            if (round == rounds / 4)
                bytes = mallinfo2().uordblks;
            const LogCapture log;
            const auto manager = facade->AddDatabase(config);
            QVERIFY(manager);
            const auto context = manager->CableContext();
            context->reload();
            context->attach(makeOwner());
            context->saveChanges();
            facade->RemoveDatabase(config);
        }
        QCOMPARE(execute(database, "SELECT count(*) FROM ce_owner").toInt(), rounds);
        QTRY_VERIFY(threadCount() <= m_threads);
        QVERIFY2(mallinfo2().uordblks < bytes + 300000, "memory grows");
    }

    void threadsOpenAndClose_data() { addBackends(); }
    void threadsOpenAndClose()
    {
        const TestDatabase one;
        const TestDatabase two;
        const auto facade = DataAccessFacade::Instance();
        const auto shared = one.config();
        QVERIFY(facade->AddDatabase(shared));
        const LogCapture log;
        std::atomic<int> opened{0};
        std::vector<std::thread> threads;
        constexpr int count = 8;
        constexpr int turns = 5;
        threads.reserve(count);
        for (int i = 0; i < count; ++i) {
            threads.emplace_back([&, i] {
                for (int turn = 0; turn < turns; ++turn) {
                    // Configurations of their own, some of equal contents, and one that all have.
                    const auto config = i % 4 == 0   ? shared
                                        : i % 2 == 0 ? one.config(shared->ConnectionName())
                                                     : two.config();
                    if (const auto manager = facade->AddDatabase(config)) {
                        ++opened;
                        manager->CableContext()->reload();
                        facade->GetRepositories(config);
                    }
                    facade->RemoveDatabase(config);
                }
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        QCOMPARE(opened.load(), count * turns);
        QVERIFY(!facade->GetRepositories(shared));
    }

private:
    int m_threads = 0;
};

DATAACCESS_TEST(DataAccessFacadeTest)

#include "DataAccessFacadeTest.moc"
