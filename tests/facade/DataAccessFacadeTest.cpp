#include "facade/DataAccessFacade.h"

#include "context/CableContext.h"
#include "context/PdContext.h"
#include "database/DbException.h"
#include "database/DbWorker.h"
#include "database/IDatabase.h"
#include "manager/IRepositoryManager.h"
#include "support/LogCapture.h"
#include "support/RunningWorker.h"
#include "support/Scalar.h"
#include "support/TestDatabase.h"
#include "support/TestMain.h"

#include <QDir>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <atomic>
#include <malloc.h>
#include <stdexcept>
#include <thread>

using namespace DataAccess;
using namespace TestSupport;

namespace {

/// A thread that has ended may still be seen for a while.
int threadCount()
{
    return QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

/// Runs statements, separated by semicolons, past the facade, and gives the first value that the last one selects.
QVariant execute(const TestDatabase& database, const QByteArray& statements)
{
    RunningWorker worker(database.config());
    return worker.run([&statements](Interfaces::IDatabase& db) {
        QVariant value;
        for (const QByteArray& statement : statements.split(';'))
            value = scalar(db, statement.constData());
        return value;
    });
}

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

    void aFaultLeavesNothing_data()
    {
        QTest::addColumn<int>("backend");
        QTest::addColumn<QByteArray>("damage");
        QTest::addColumn<QByteArray>("repair");
        QTest::addColumn<bool>("isUnknown");
        QTest::addColumn<QString>("reason");
        for (const int backend : {int(Enumerations::SQLite3), int(Enumerations::Postgres)}) {
            QTest::addRow("unreadable version, %d", backend)
                << backend << QByteArray("ALTER TABLE feature_defaults RENAME COLUMN value TO lost")
                << QByteArray("ALTER TABLE feature_defaults RENAME COLUMN lost TO value") << true
                << QStringLiteral("^The schema version CablesVersion cannot be read: .*value");
            QTest::addRow("step that fails, %d", backend)
                << backend
                << QByteArray("UPDATE feature_defaults SET value = '3' WHERE value = '9';"
                              "ALTER TABLE ce_segment RENAME TO lost")
                << QByteArray("UPDATE feature_defaults SET value = '9' WHERE value = '3';"
                              "ALTER TABLE lost RENAME TO ce_segment")
                << false << QStringLiteral("^The schema CablesVersion cannot be brought up to date: .*ce_segment");
        }
    }
    void aFaultLeavesNothing()
    {
        QFETCH(QByteArray, damage);
        QFETCH(QByteArray, repair);
        QFETCH(bool, isUnknown);
        QFETCH(QString, reason);
        const TestDatabase database;
        const auto facade = DataAccessFacade::Instance();
        const auto config = database.config();
        QVERIFY(facade->AddDatabase(config));
        facade->RemoveDatabase(config);
        execute(database, damage);
        const QSignalSpy unknown(facade.get(), &DataAccessFacade::unknownDB);
        const LogCapture log;
        QVERIFY(!facade->AddDatabase(config));
        QVERIFY(!facade->GetRepositories(config));
        QVERIFY2(facade->LastError(config).contains(QRegularExpression(reason)),
                 qUtf8Printable(facade->LastError(config)));
        QTRY_VERIFY(threadCount() <= m_threads);
        QCOMPARE(unknown.isEmpty(), !isUnknown);
        for (const QVariantList& arguments : unknown)
            QCOMPARE(arguments.first().toString(),
                     QStringLiteral("Error reading database: cannot determine database version."));
        QCOMPARE(log.messages(QtWarningMsg, QStringLiteral("qor.facade")),
                 QStringList(QStringLiteral("QOR did not initialized")));

        // Once the fault is mended, the same configuration opens.
        execute(database, repair);
        QVERIFY(facade->AddDatabase(config));
        QVERIFY(facade->LastError(config).isEmpty());
        facade->RemoveDatabase(config);
    }

    void neitherDoesAnException()
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
        execute(database, "UPDATE feature_defaults SET value = '10' WHERE value = '9';"
                          "UPDATE feature_defaults SET value = '9' WHERE value = '8'; DELETE FROM ce_insulation;"
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
