#include "context/ContextDatabase.h"
#include "context/FaultyRepository.h"
#include "context/SampleNetwork.h"
#include "repositories/cables/PlainRepositories.h"
#include "support/FileLocker.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <atomic>
#include <thread>

using namespace Cables::Entities;
using namespace DataAccess;
using namespace QOR::Entities::Enumerations;
using namespace TestSupport;
using Context::AbstractContext;
using Context::CableContext;
using DataAccess::Database::Failure;

namespace {

/// Adds the signals of a context to @p names, in the order of their emission.
void recordSignals(AbstractContext& context, QStringList& names)
{
    QObject::connect(&context, &AbstractContext::loadingChanged, &context, [&names](bool isLoading) {
        names << (isLoading ? QStringLiteral("loading") : QStringLiteral("not loading"));
    });
    QObject::connect(&context, &AbstractContext::loadingCompleted, &context,
                     [&names] { names << QStringLiteral("loaded"); });
    QObject::connect(&context, &AbstractContext::loadingFailed, &context,
                     [&names] { names << QStringLiteral("load failed"); });
    QObject::connect(&context, &AbstractContext::savingFailed, &context,
                     [&names] { names << QStringLiteral("save failed"); });
}

} // namespace

class CableContextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void entitiesOfNoKindAreCounted()
    {
        CableContext context(DataAccess::Enumerations::Complete, nullptr, 0);
        context.attach(nullptr);
        context.detach(nullptr);
        for (int i = 0; i < 2; ++i)
            context.attach(std::make_shared<QOR::Entities::Entity>());
        context.saveChanges();
        QCOMPARE(context.count(), 2U);
    }

    void signalsComeInOrder_data() { addBackends(); }
    void signalsComeInOrder()
    {
        ContextDatabase database;
        const auto context = database.cableContext();
        QStringList names;
        recordSignals(*context, names);
        int last = 0;
        int total = 0;
        connect(context.get(), &AbstractContext::loadingProgress, context.get(), [&](int done, int of) {
            QVERIFY(context->isLoading());
            QCOMPARE(done, ++last);
            total = of;
        });
        database.worker().run([](DataAccess::Interfaces::IDatabase& db) {
            for (const char* table :
                 {"ce_insulation", "ce_segmenttype", "ce_switchgear", "ce_termination", "ce_segment_detail"})
                db.Exec(QStringLiteral("DELETE FROM %1").arg(QLatin1String(table)));
        });
        context->reload();
        QCOMPARE(names,
                 QStringList({QStringLiteral("loading"), QStringLiteral("not loading"), QStringLiteral("loaded")}));
        QCOMPARE(last, 13);
        QCOMPARE(total, 13);
        QCOMPARE(context->count(), 0U);
        QVERIFY(describe(*context).isEmpty());
    }

    void aMissingRepositoryLeavesItsGroupEmpty()
    {
        QFETCH(QString, missing);
        ContextDatabase database(DataAccess::Enumerations::SQLite3);
        SampleNetwork network(1);
        const auto filled = database.cableContext();
        network.attachTo(*filled);
        filled->saveChanges();

        const auto manager = database.editorManager();
        if (missing == QLatin1String("owner"))
            manager->SetOwnerRepository(nullptr);
        else
            manager->SetPhaseRepository(nullptr);
        CableContext context(DataAccess::Enumerations::Complete, manager, 0);
        context.reload();
        const bool hasPhases = missing == QLatin1String("owner");
        QCOMPARE(context.Phases().size(), hasPhases ? 3 : 0);
        QCOMPARE(context.Segments().size(), hasPhases ? 20 : 0);
        QCOMPARE(context.Cables().size(), hasPhases ? 0 : 1);
        QCOMPARE(context.Ratings().size(), hasPhases ? 0 : 1);
        QCOMPARE(context.Routes().size(), 1);
        context.saveChanges();
    }
    void aMissingRepositoryLeavesItsGroupEmpty_data()
    {
        QTest::addColumn<QString>("missing");
        QTest::newRow("owner") << QStringLiteral("owner");
        QTest::newRow("phase") << QStringLiteral("phase");
    }

    void whatIsSavedIsLoadedWithAllItsLinks_data() { addBackends(); }
    void whatIsSavedIsLoadedWithAllItsLinks()
    {
        ContextDatabase database;
        const auto source = database.loadedCableContext();
        SampleNetwork network(2);
        network.attachTo(*source);
        source->saveChanges();
        const auto loaded = database.loadedCableContext();
        QCOMPARE(describe(*loaded), describe(*source));
        const auto cable = loaded->Cables().value(sampleId(QStringLiteral("cable 1")));
        QCOMPARE(cable->StationA()->Image().pixelColor(0, 0), QColor(Qt::darkGreen));
        QCOMPARE(cable->Phases().at(1)->Segments().at(5)->Phase(), cable->Phases().at(1));
        QCOMPARE(cable->Route()->Points().at(0), cable->StationA()->Point());

        // Nothing is written that has not changed.
        const QStringList rows = database.cableRows();
        loaded->saveChanges();
        loaded->reload();
        QCOMPARE(database.cableRows(), rows);
    }

    void danglingAndContradictingIdsStay_data() { addBackends(); }
    void danglingAndContradictingIdsStay()
    {
        ContextDatabase database;
        const auto source = database.cableContext();
        SampleNetwork network(2);
        const QUuid nowhere = sampleId(QStringLiteral("nowhere"));
        network.cables[0]->SetOwnerId(nowhere);
        const auto route = std::dynamic_pointer_cast<Route>(network.cables[0]->Route());
        std::vector<QUuid> points = route->PointIds();
        points[3] = nowhere;
        route->SetPointIds(points);
        network.attachTo(*source);
        source->saveChanges();
        // The first cable claims a route that says it is the second one's.
        database.worker().run([&](DataAccess::Interfaces::IDatabase& db) {
            db.Exec(QStringLiteral("UPDATE ce_route SET cable = '%1' WHERE id = '%2'")
                        .arg(network.cables[1]->Id().toString(), route->Id().toString()));
        });
        const QStringList before = database.cableRows();

        const auto loaded = database.loadedCableContext();
        const auto cable = loaded->Cables().value(network.cables[0]->Id());
        QCOMPARE(cable->OwnerId(), nowhere);
        QVERIFY(!cable->Owner());
        QCOMPARE(cable->Route()->PointIds(), points);
        QCOMPARE(cable->Route()->Points().size(), points.size() - 1);
        QCOMPARE(cable->Route()->Cable()->Id(), network.cables[1]->Id());
        loaded->saveChanges();
        QCOMPARE(database.cableRows(), before);
    }

    void loadingAgainFreesTheFormerNetwork()
    {
        ContextDatabase database(DataAccess::Enumerations::SQLite3);
        const auto context = database.cableContext();
        {
            SampleNetwork network(3);
            network.attachTo(*context);
        }
        context->saveChanges();
        std::vector<std::weak_ptr<void>> former;
        for (int round = 0; round < 2; ++round) {
            for (const auto& cable : context->Cables())
                former.emplace_back(cable);
            for (const auto& segment : context->Segments())
                former.emplace_back(segment);
            context->reload();
        }
        QCOMPARE(former.size(), std::size_t(2 * 63));
        QVERIFY(std::all_of(former.begin(), former.end(), [](const auto& entity) { return entity.expired(); }));
    }

    void aNewerSchemaIsNotWrittenUnasked()
    {
        ContextDatabase database(DataAccess::Enumerations::SQLite3);
        const auto manager = database.editorManager();
        manager->SetSchemaIsNewer(true);
        const LogCapture log;
        CableContext context(DataAccess::Enumerations::Complete, manager, 0);
        context.reload();
        QVERIFY(log.contains(QStringLiteral("newer")));
        QVERIFY(context.Insulations().isEmpty());
    }

    void withoutItsWorkerAContextFailsCleanly()
    {
        std::shared_ptr<CableContext> context;
        QStringList names;
        {
            ContextDatabase database(DataAccess::Enumerations::SQLite3);
            context = database.loadedCableContext();
            recordSignals(*context, names);
        }
        const LogCapture log;
        const auto owner = makeOwner(QStringLiteral("late"));
        context->attach(owner);
        context->saveChanges();
        QCOMPARE(owner->EntityState(), New);
        context->reload();
        QCOMPARE(names,
                 QStringList({QStringLiteral("save failed"), QStringLiteral("loading"), QStringLiteral("load failed"),
                              QStringLiteral("not loading"), QStringLiteral("loaded")}));
    }

    void whatCannotBeReadIsNotImported()
    {
        ContextDatabase database(DataAccess::Enumerations::SQLite3);
        const auto manager = database.editorManager();
        const auto failing = std::make_shared<CableContext>(DataAccess::Enumerations::Complete, manager, 0);
        SampleNetwork(1).attachTo(*failing);
        failing->saveChanges();
        const auto other = database.loadedCableContext();
        const std::vector<std::shared_ptr<Cable>> cables = {other->Cables().begin().value()};
        manager->SetOwnerRepository(makeFaulty<Repositories::OwnerRepository>(database, Failure::Kind::Statement));
        const QSignalSpy failed(failing.get(), &AbstractContext::loadingFailed);
        failing->reload();
        QCOMPARE(failed.front().front().toString(), QStringLiteral("Owner: out of order"));
        const LogCapture log;
        failing->import(cables);
        other->import(cables, *failing);
        // Nor does a context that was never loaded import then. It keeps what was attached.
        CableContext third(DataAccess::Enumerations::Complete, manager, 0);
        third.attach(cables.front());
        third.import(cables);
        QCOMPARE(log.messages(QtWarningMsg, QStringLiteral("qor.context")).size(), 3);
        QVERIFY(failing->count() == 0 && third.count() == 1 && third.Phases().isEmpty());
    }

    void aLockIsWaitedForOncePerCall()
    {
        ContextDatabase database(DataAccess::Enumerations::SQLite3);
        const auto cables = database.loadedCableContext();
        const auto results = database.pdContext();
        const auto attach = [](AbstractContext& context, const AbstractContext::EntityPointer& entity) {
            entity->SetId(QUuid::createUuid());
            context.attach(entity);
        };
        attach(*cables, std::make_shared<Owner>());
        attach(*cables, std::make_shared<Station>());
        attach(*results, std::make_shared<PD::Entities::PdTask>());
        attach(*results, std::make_shared<PD::Entities::PdReport>());
        database.worker().run(
            [](DataAccess::Interfaces::IDatabase& db) { db.Exec(QStringLiteral("PRAGMA busy_timeout = 100")); });
        const FileLocker locker(database.name());
        const LogCapture log;
        const auto waits = [&log] {
            // What the connection says of each; others repeat it.
            return log.messages(QtCriticalMsg, QStringLiteral("qor.database"))
                .filter(QRegularExpression(QStringLiteral("^(SQL Error|Can't begin a transaction).*locked")))
                .size();
        };
        int calls = 0;
        for (int i = 0; i < 3; ++i) {
            cables->saveChanges();
            QCOMPARE(waits(), ++calls);
            results->saveChanges();
            QCOMPARE(waits(), ++calls);
        }
        // Behind each load the worker has the loads of the other kinds.
        for (int i = 0; i < 3; ++i) {
            cables->reload();
            results->reload();
            calls += 2;
            QCOMPARE(waits(), calls);
        }
    }

    void defaultTypesAreNotInsertedBlindly()
    {
        ContextDatabase database(DataAccess::Enumerations::SQLite3);
        const auto manager = database.editorManager();
        manager->SetInsulationRepository(
            makeFaulty<Repositories::InsulationRepository>(database, Failure::Kind::Unavailable));
        const LogCapture log;
        const CableContext context(DataAccess::Enumerations::Complete, manager, 0);
        QVERIFY(log.contains(QStringLiteral("Insulation: out of order")));
        QCOMPARE(database.cableRows(), QStringList());
    }

    void threadsTakeTurns_data() { addBackends(); }
    void threadsTakeTurns()
    {
        ContextDatabase database;
        const auto context = database.cableContext();
        SampleNetwork(2).attachTo(*context);
        context->saveChanges();
        const QStringList before = database.cableRows();
        // A receiver on a thread of its own, which is slow.
        QThread thread;
        thread.start();
        QObject receiver;
        receiver.moveToThread(&thread);
        std::atomic<int> received{0};
        connect(context.get(), &AbstractContext::loadingCompleted, &receiver, [&received] {
            QThread::msleep(5);
            ++received;
        });
        std::atomic<int> inside{0};
        connect(
            context.get(), &AbstractContext::loadingChanged, context.get(),
            [&inside](bool isLoading) { QVERIFY2((isLoading ? inside++ : --inside) == 0, "two loads at once"); },
            Qt::DirectConnection);
        constexpr int rounds = 10;
        std::vector<std::thread> threads;
        for (int i = 0; i < 2; ++i) {
            threads.emplace_back([&context] {
                for (int round = 0; round < rounds; ++round)
                    context->reload();
            });
            threads.emplace_back([&context] {
                for (int round = 0; round < rounds; ++round) {
                    context->saveChanges();
                    context->count();
                }
            });
        }
        for (std::thread& each : threads)
            each.join();
        QTRY_COMPARE(received.load(), 2 * rounds);
        thread.quit();
        thread.wait();
        QCOMPARE(database.cableRows(), before);
    }

    void theDefaultTypesAreLinked()
    {
        const LogCapture log;
        const CableContext::DefaultTypes types = CableContext::defaultTypes();
        const CableContext::DefaultTypes copy = types;
        QCOMPARE(copy.jointType()->Name(), QStringLiteral("Joint"));
        QVERIFY(copy.jointType()->IsJoint() && !copy.cableType()->IsJoint());
        QCOMPARE(copy.getSegmentDetailCableDefault()->Name(), QStringLiteral("Default"));
        QCOMPARE(copy.getSegmentDetailJointDefault()->Type(), copy.jointType());
        for (const auto& detail : types.segmentDetails)
            QVERIFY(detail->Type() == types.jointType() ? detail->InsulationId().isNull()
                                                        : bool(types.findInsulation(detail->InsulationId())));
        QVERIFY(log.messages(QtWarningMsg, QStringLiteral("qor.context")).isEmpty());
        const QUuid unknown = sampleId(QStringLiteral("unknown"));
        QVERIFY(!types.findInsulation(unknown));
        QCOMPARE(log.messages(QtWarningMsg, QStringLiteral("qor.context")),
                 QStringList(QStringLiteral("UNKNOWN ID: %1 (Insulation)").arg(unknown.toString())));
    }
};

DATAACCESS_TEST(CableContextTest)

#include "CableContextTest.moc"
