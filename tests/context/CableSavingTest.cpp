#include "context/ContextDatabase.h"
#include "context/FaultyRepository.h"
#include "context/SampleNetwork.h"
#include "repositories/cables/PlainRepositories.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"

#include <QSignalSpy>
#include <QTest>

using namespace Cables::Entities;
using namespace DataAccess;
using namespace QOR::Entities::Enumerations;
using namespace TestSupport;
using Context::AbstractContext;
using Context::CableContext;
using EntityPointer = AbstractContext::EntityPointer;

class CableSavingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatAnEntityIsLinkedToIsSavedWithIt_data() { addBackends(); }
    void whatAnEntityIsLinkedToIsSavedWithIt()
    {
        ContextDatabase all;
        const auto whole = all.cableContext();
        SampleNetwork(1).attachTo(*whole);
        whole->saveChanges();
        const auto asSegment = [](const auto& segment) { return std::dynamic_pointer_cast<Segment>(segment); };
        const auto asRoute = [](const auto& route) { return std::dynamic_pointer_cast<Route>(route); };
        for (int start = 0; start < 3; ++start) {
            ContextDatabase database;
            const auto context = database.cableContext();
            const QSignalSpy failed(context.get(), &AbstractContext::savingFailed);
            const SampleNetwork network(1);
            const auto cable = network.cables[0];
            const auto segment = asSegment(cable->Phases().at(0)->Segments().at(3));
            // A default type that somebody has changed is only referred to.
            const auto joint = CableContext::defaultTypes().getSegmentDetailJointDefault();
            database.value(QStringLiteral("UPDATE ce_segment_detail SET name = 'Mine' WHERE name = 'Default'"));
            segment->SetDetail(joint);
            context->attach(start == 0   ? EntityPointer(cable)
                            : start == 1 ? EntityPointer(segment)
                                         : asRoute(cable->Route()));
            context->saveChanges();
            QCOMPARE(database.cableRows().size(), all.cableRows().size());
            QVERIFY(failed.isEmpty());

            // What is linked to it later too, and in place of what was: one that is taken away stays so.
            const auto phase = cable->Phases().front();
            cable->RemovePhase(phase);
            cable->SetOwner(makeOwner(QStringLiteral("new")));
            context->saveChanges();
            const auto loaded = database.loadedCableContext();
            const auto again = loaded->Cables().value(cable->Id());
            QCOMPARE(again->Phases().size(), std::size_t(2));
            QCOMPARE(again->Owner()->Name(), QStringLiteral("new"));
            QVERIFY(loaded->Phases().value(phase->Id())->CableId().isNull());
            QCOMPARE(loaded->SegmentDetails().value(joint->Id())->Name(), QStringLiteral("Mine"));
        }
    }

    void aSaveEndsOnceTheDatabaseIsOutOfReach()
    {
        ContextDatabase database(DataAccess::Enumerations::SQLite3);
        const auto manager = database.editorManager();
        const auto owners =
            makeFaulty<Repositories::OwnerRepository>(database, DataAccess::Database::Failure::Kind::Unavailable);
        manager->SetOwnerRepository(owners);
        Context::CableContext context(DataAccess::Enumerations::Complete, manager, 0);
        const QSignalSpy failed(&context, &AbstractContext::savingFailed);
        SampleNetwork network(1);
        network.attachTo(context);
        const LogCapture log;
        context.saveChanges();
        // Segment types and details come before owners, all else behind.
        QCOMPARE(failed.count(), 1);
        QVERIFY(
            failed.front().front().toString().endsWith(QStringLiteral(" could not be stored: Owner: out of order")));
        QVERIFY(log.contains(failed.front().front().toString()));
        QCOMPARE(database.value(QStringLiteral("SELECT count(*) FROM ce_point")).toInt(), 0);
        QCOMPARE(network.cables[0]->EntityState(), New);
        owners->fault.reset();
        context.saveChanges();
        QCOMPARE(failed.count(), 1);
        QCOMPARE(database.value(QStringLiteral("SELECT count(*) FROM ce_segment")).toInt(), 20);
    }

    void anEntityTellsOnlyContextsThatKnowIt()
    {
        ContextDatabase database(DataAccess::Enumerations::SQLite3);
        const auto owner = makeOwner(QStringLiteral("Grid"));
        {
            const auto first = database.cableContext();
            first->attach(owner);
            const auto second = database.cableContext();
            second->attach(owner);
            second->reload();
            owner->SetName(QStringLiteral("changed"));
            second->saveChanges();
            QCOMPARE(database.value(QStringLiteral("SELECT count(*) FROM ce_owner")).toInt(), 0);
            first->saveChanges();
        }
        owner->SetName(QStringLiteral("changed again"));
        QCOMPARE(owner->EntityState(), Modified);
        QCOMPARE(database.value(QStringLiteral("SELECT name FROM ce_owner")).toString(), QStringLiteral("changed"));
    }
};

DATAACCESS_TEST(CableSavingTest)

#include "CableSavingTest.moc"
