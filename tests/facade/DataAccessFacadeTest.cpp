#include "facade/DataAccessFacade.h"

#include "context/CableContext.h"
#include "context/PdContext.h"
#include "database/DbWorker.h"
#include "database/NotOpenException.h"
#include "manager/IRepositoryManager.h"
#include "support/LogCapture.h"
#include "support/RunningWorker.h"
#include "support/Scalar.h"
#include "support/TestDatabase.h"
#include "support/TestMain.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <atomic>
#include <malloc.h>
#include <thread>

using namespace DataAccess;
using namespace TestSupport;

namespace {

int threadCount()
{
    return QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

/// Runs @p statement past the facade, and gives the first value of what it selects.
QVariant execute(const TestDatabase& database, const char* statement)
{
    RunningWorker worker(database.config());
    return worker.run([statement](Interfaces::IDatabase& db) { return scalar(db, statement); });
}

std::shared_ptr<Cables::Entities::Owner> makeOwner()
{
    auto owner = std::make_shared<Cables::Entities::Owner>();
    owner->SetId(QUuid::createUuid());
    return owner;
}

} // namespace

class DataAccessFacadeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
            const auto manager = facade->AddDatabase(config);
            QVERIFY(manager);
            const auto editor = manager->EditorRepositories();
            QCOMPARE(editor->InsulationRepository()->Count(), 8U);
            QCOMPARE(editor->SegmentTypeRepository()->Count(), 2U);
            QCOMPARE(editor->SwitchgearRepository()->Count(), 5U);
            QCOMPARE(editor->TerminationRepository()->Count(), 6U);
            QCOMPARE(editor->SegmentDetailRepository()->Count(), 16U);
            facade->RemoveDatabase(config);
            execute(database, "UPDATE ce_insulation SET name = 'mine' WHERE name = 'PVC'");
        }
        QCOMPARE(execute(database, "SELECT count(*) FROM ce_insulation WHERE name = 'mine'").toInt(), 1);
        const auto versions = DataAccessFacade::Instance()->GetVersions();
        QCOMPARE(versions.size(), 2);
        QCOMPARE(versions.value(QStringLiteral("CablesVersion")), QStringLiteral("1.3.9"));
        QCOMPARE(versions.value(QStringLiteral("PdVersion")), QStringLiteral("1.3.8"));
    }

    void whatCannotBeOpenedLeavesNothing()
    {
        const TestDatabase database(Enumerations::SQLite3);
        QFile file(database.name());
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("no database at all") > 0);
        file.close();
        const auto facade = DataAccessFacade::Instance();
        const QSignalSpy unknown(facade.get(), &DataAccessFacade::unknownDB);
        const LogCapture log;
        QVERIFY_EXCEPTION_THROWN(facade->AddDatabase(nullptr), std::invalid_argument);
        const int threads = threadCount();
        const auto config = database.config();
        for (int round = 0; round < 2; ++round)
            QVERIFY(!facade->AddDatabase(config));
        QVERIFY(!facade->GetRepositories(config));
        QCOMPARE(unknown.first().first().toString(),
                 QStringLiteral("Error reading database: cannot determine database version."));
        QCOMPARE(log.messages(QtWarningMsg, QStringLiteral("qor.facade")),
                 QStringList({QStringLiteral("QOR did not initialized"), QStringLiteral("QOR did not initialized")}));
        QTRY_COMPARE(threadCount(), threads);

        // Once the fault is mended, the same configuration opens.
        QVERIFY(file.remove());
        QVERIFY(facade->AddDatabase(config));
        facade->RemoveDatabase(config);
    }

    void aNewerSchemaIsOpenedAndLeftAlone_data() { addBackends(); }
    void aNewerSchemaIsOpenedAndLeftAlone()
    {
        const TestDatabase database;
        const auto facade = DataAccessFacade::Instance();
        const auto config = database.config();
        QVERIFY(facade->AddDatabase(config));
        facade->RemoveDatabase(config);
        execute(database, "UPDATE feature_defaults SET value = '10' WHERE value = '9'");
        execute(database, "DELETE FROM ce_insulation");
        const QSignalSpy newer(facade.get(), &DataAccessFacade::migrationError);
        const LogCapture log;
        const auto manager = facade->AddDatabase(config);
        QVERIFY(manager);
        manager->CableContext()->reload();
        facade->RemoveDatabase(config);
        QCOMPARE(newer.count(), 1);
        QCOMPARE(newer.first().first().toString(), QStringLiteral("Database newer than this: CablesVersion"));
        QVERIFY(!log.messages(QtWarningMsg, QStringLiteral("qor.context")).isEmpty());
        QCOMPARE(execute(database, "SELECT count(*) FROM ce_insulation").toInt(), 0);
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
            return facade->GetRepositories(config) == manager;
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

    void nothingGrowsOverManyRounds_data() { addBackends(); }
    void nothingGrowsOverManyRounds()
    {
        const TestDatabase database;
        const auto facade = DataAccessFacade::Instance();
        const LogCapture log;
        constexpr int rounds = 200;
        constexpr int warmUp = 50;
        const int threads = threadCount();
        std::size_t bytes = 0;
        for (int round = 0; round < rounds; ++round) {
            if (round == warmUp)
                bytes = mallinfo2().uordblks;
            const auto config = database.config();
            const auto manager = facade->AddDatabase(config);
            QVERIFY(manager);
            const auto context = manager->CableContext();
            context->reload();
            context->Insulations().begin().value()->SetVelocity(1e8 + round);
            context->saveChanges();
            facade->RemoveDatabase(config);
        }
        // One that has ended may be seen for a while.
        QTRY_VERIFY(threadCount() <= threads);
        // The log that is captured grows, by some hundred bytes a round.
        QVERIFY2(mallinfo2().uordblks < bytes + 2000000, "memory grows");
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
        constexpr int rounds = 5;
        threads.reserve(count);
        for (int i = 0; i < count; ++i) {
            threads.emplace_back([&, i] {
                for (int round = 0; round < rounds; ++round) {
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
        QCOMPARE(opened.load(), count * rounds);
        QVERIFY(!facade->GetRepositories(shared));
    }
};

DATAACCESS_TEST(DataAccessFacadeTest)

#include "DataAccessFacadeTest.moc"
