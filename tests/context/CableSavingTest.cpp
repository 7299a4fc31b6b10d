#include "context/ContextDatabase.h"
#include "context/FaultyRepository.h"
#include "context/SampleNetwork.h"
#include "repositories/cables/PlainRepositories.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"

#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <map>

using namespace Cables::Entities;
using namespace DataAccess;
using namespace QOR::Entities::Enumerations;
using namespace TestSupport;
using Context::AbstractContext;

class CableSavingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void unchangedDataIsNotWritten_data() { addBackends(); }
    void unchangedDataIsNotWritten()
    {
        ContextDatabase database;
        const auto context = database.cableContext();
        SampleNetwork network(2);
        const auto snapshot = std::dynamic_pointer_cast<Segment>(network.cables[0]->Phases().at(0)->Segments().at(0));
        const auto deleted = std::dynamic_pointer_cast<Cable>(network.cables[1]);
        snapshot->SetEntityState(Snapshot);
        network.attachTo(*context);
        context->saveChanges();
        deleted->SetEntityState(Deleted);
        context->saveChanges();
        const QStringList before = database.cableRows();
        context->saveChanges();
        context->reload();
        context->saveChanges();
        context->reload();
        QCOMPARE(database.cableRows(), before);
        QCOMPARE(context->Segments().value(snapshot->Id())->EntityState(), Snapshot);
        QCOMPARE(context->Cables().value(deleted->Id())->EntityState(), Deleted);
    }

    void onlyWhatChangedIsWritten_data() { addBackends(); }
    void onlyWhatChangedIsWritten()
    {
        ContextDatabase database;
        const auto context = database.loadedCableContext();
        SampleNetwork(2).attachTo(*context);
        context->saveChanges();
        context->reload();
        const QStringList before = database.cableRows();
        const auto cable = context->Cables().value(sampleId(QStringLiteral("cable 0")));
        QTest::qWait(2);
        cable->SetComment(QStringLiteral("dug up"));
        context->saveChanges();
        const QStringList changed = changedRows(before, database.cableRows());
        QCOMPARE(changed.size(), 1);
        QVERIFY(changed.front().contains(QStringLiteral("dug up")) &&
                changed.front().startsWith(QStringLiteral("ce_cable")));
        QCOMPARE(cable->EntityState(), Normal);
    }

    void whatACableIsLinkedToIsSavedWithIt_data() { addBackends(); }
    void whatACableIsLinkedToIsSavedWithIt()
    {
        ContextDatabase all;
        const auto whole = all.cableContext();
        SampleNetwork(2).attachTo(*whole);
        whole->saveChanges();
        ContextDatabase database;
        const auto context = database.cableContext();
        const QSignalSpy failed(context.get(), &AbstractContext::savingFailed);
        // A default type that somebody has changed is only referred to.
        const QString joint = QStringLiteral("SELECT name FROM ce_segment_detail WHERE id = '%1'")
                                  .arg(context->defaultTypes().getSegmentDetailJointDefault()->Id().toString());
        database.value(QStringLiteral("UPDATE ce_segment_detail SET name = 'Mine' WHERE name = 'Default'"));
        SampleNetwork network(2);
        for (const auto& cable : network.cables)
            context->attach(cable);
        QCOMPARE(context->count(), 2U);
        context->saveChanges();
        QCOMPARE(database.cableRows().size(), all.cableRows().size());
        QCOMPARE(database.value(joint).toString(), QStringLiteral("Mine"));
        QVERIFY(failed.isEmpty());

        // What is linked to it later too, and in place of what was: one that is taken away stays so.
        const auto cable = network.cables[0];
        const auto phase = cable->Phases().front();
        cable->RemovePhase(phase);
        cable->SetOwner(makeOwner(QStringLiteral("new")));
        context->saveChanges();
        const auto loaded = database.loadedCableContext();
        const auto again = loaded->Cables().value(cable->Id());
        QCOMPARE(again->Phases().size(), std::size_t(2));
        QCOMPARE(again->Owner()->Name(), QStringLiteral("new"));
        QVERIFY(loaded->Phases().value(phase->Id())->CableId().isNull());
    }

    void anIdThatComesLateIsStored_data() { addBackends(); }
    void anIdThatComesLateIsStored()
    {
        ContextDatabase database;
        const auto context = database.cableContext();
        const QSignalSpy failed(context.get(), &AbstractContext::savingFailed);
        const auto cable = std::make_shared<Cable>();
        const auto phase = std::make_shared<Phase>();
        const auto owner = std::make_shared<Owner>();
        cable->AddPhase(phase);
        cable->SetOwner(owner);
        context->attach(cable);
        cable->SetId(sampleId(QStringLiteral("cable")));
        context->saveChanges();
        QCOMPARE(failed.count(), 1);
        QCOMPARE(database.value(QStringLiteral("SELECT count(*) FROM ce_cable")).toInt(), 1);
        owner->SetId(sampleId(QStringLiteral("owner")));
        phase->SetId(sampleId(QStringLiteral("phase")));
        context->saveChanges();
        QCOMPARE(failed.count(), 1);
        const auto loaded = database.loadedCableContext()->Cables().value(cable->Id());
        QVERIFY(loaded->Owner() && loaded->Phases().size() == 1);
    }

    void everyChangeIsStored_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("row");
        const auto add = [](const char* name, const char* steps, const char* row) {
            QTest::newRow(name) << QString::fromLatin1(steps) << QString::fromLatin1(row);
        };
        add("marked, then changed", "a s D s e s", "1 deleted out");
        add("marked, then new", "a s D s e W s", "1 ");
        add("marked, changed, marked", "a s S s e s D s", "1 deleted out");
        add("loaded as deleted, made normal, changed", "a D W s D s l N s e s", "1 ");
        add("loaded as deleted, modified, changed", "a s D s l M s e s", "1 ");
        add("loaded as deleted, changed", "a s D s l e s", "1 deleted");
        add("loaded as a snapshot, changed", "a S s l e s", "1 snapshot");
        add("loaded as a snapshot, made normal", "a S s l N s", "0 ");
        add("changed, then an import", "a s e i s", "1 ");
        add("marked, changed, then an import", "a s D s e i s", "1 deleted out");
        add("marked, made new, then an import", "a s D s W i s", "0 ");
        add("attached before its id", "A s", "0 ");
        add("given another id", "a s I s", "0 ");
        add("deleted before it was stored", "a D s e s", "none out");
        add("stored after all", "a D s e W s", "1 ");
        add("detached", "a s d e D s", "0 ");
        add("detached for a while", "a s e d s a s", "1 ");
        add("detached before it was stored", "a d s", "none out");
        add("the edit of a load that is let go of", "a s e l s", "0 ");
    }
    /// An owner whose names are 0, 1, 2 is attached, saved, changed and so on.
    void everyChangeIsStored()
    {
        QFETCH(QString, steps);
        ContextDatabase database(DataAccess::Enumerations::SQLite3);
        const auto context = database.cableContext();
        const QSignalSpy failed(context.get(), &AbstractContext::savingFailed);
        int names = 0;
        auto owner = makeOwner(QStringLiteral("0"));
        const std::map<char, std::function<void()>> actions = {
            {'a', [&] { context->attach(owner); }},
            {'A',
             [&] {
                 // With another one that has no id either.
                 const QUuid id = owner->Id();
                 owner->SetId({});
                 const auto other = std::make_shared<Owner>();
                 context->attach(other);
                 context->attach(owner);
                 other->SetId(sampleId(QStringLiteral("other")));
                 owner->SetId(id);
             }},
            {'I', [&] { owner->SetId(sampleId(QStringLiteral("another id"))); }},
            {'s', [&] { context->saveChanges(); }},
            {'l',
             [&] {
                 context->reload();
                 owner = context->Owners().value(owner->Id());
             }},
            {'d', [&] { context->detach(owner); }},
            {'e', [&] { owner->SetName(QString::number(++names)); }},
            {'i',
             [&] {
                 const auto cable = std::make_shared<Cable>();
                 cable->SetId(sampleId(QStringLiteral("unrelated")));
                 context->import({cable});
             }},
            {'D', [&] { owner->SetEntityState(Deleted); }},
            {'S', [&] { owner->SetEntityState(Snapshot); }},
            {'N', [&] { owner->SetEntityState(Normal); }},
            {'M', [&] { owner->SetEntityState(Modified); }},
            {'W', [&] { owner->SetEntityState(New); }},
        };
        for (const QString& step : steps.split(QLatin1Char(' ')))
            actions.at(step.front().toLatin1())();
        const QString stored =
            database
                .value(
                    QStringLiteral("SELECT name || CASE WHEN deleted THEN ' deleted' WHEN snap THEN ' snapshot' ELSE "
                                   "' ' END FROM ce_owner WHERE id = '%1'")
                        .arg(owner->Id().toString()))
                .toString();
        const QString shown = context->Owners().contains(owner->Id()) ? QString() : QStringLiteral(" out");
        QTEST(QString((stored.isEmpty() ? QStringLiteral("none") : stored) + shown), "row");
        QCOMPARE(failed.count(), 0);
    }

    void aRemovedRowFailsAlone()
    {
        ContextDatabase database(DataAccess::Enumerations::SQLite3);
        const auto manager = database.editorManager();
        const auto owners = std::make_shared<FaultyRepository<Repositories::OwnerRepository>>(
            database.worker().get(), DataAccess::Enumerations::Complete, nullptr);
        manager->SetOwnerRepository(owners);
        Context::CableContext context(DataAccess::Enumerations::Complete, manager, 0);
        const QSignalSpy failed(&context, &AbstractContext::savingFailed);
        std::vector<std::shared_ptr<Owner>> all;
        for (const char* name : {"a", "b", "c"}) {
            all.push_back(makeOwner(QString::fromLatin1(name)));
            context.attach(all.back());
        }
        context.saveChanges();
        const QString names =
            QStringLiteral("SELECT group_concat(name) FROM (SELECT name FROM ce_owner ORDER BY name)");
        for (const auto& owner : all)
            owner->SetName(owner->Name() + QLatin1Char('2'));
        owners->removed = {all[1]->Id()};
        database.value(QStringLiteral("DELETE FROM ce_owner WHERE name = 'b'"));
        for (int round = 1; round <= 2; ++round) {
            context.saveChanges();
            QCOMPARE(failed.count(), round);
            QVERIFY(
                failed.back().front().toString().startsWith(QStringLiteral("1 entities could not be stored: Owner")));
            QCOMPARE(all[1]->EntityState(), Modified);
            QCOMPARE(all[2]->EntityState(), Normal);
            QCOMPARE(database.value(names).toString(), QStringLiteral("a2,c2"));
        }
        all[1]->SetEntityState(New);
        context.saveChanges();
        QCOMPARE(failed.count(), 2);
        QCOMPARE(database.value(names).toString(), QStringLiteral("a2,b2,c2"));
    }

    void aSaveEndsOnceTheDatabaseIsOutOfReach()
    {
        ContextDatabase database(DataAccess::Enumerations::SQLite3);
        const auto manager = database.editorManager();
        const auto owners = std::make_shared<FaultyRepository<Repositories::OwnerRepository>>(
            database.worker().get(), DataAccess::Enumerations::Complete, nullptr);
        manager->SetOwnerRepository(owners);
        Context::CableContext context(DataAccess::Enumerations::Complete, manager, 0);
        const QSignalSpy failed(&context, &AbstractContext::savingFailed);
        SampleNetwork network(1);
        network.attachTo(context);
        owners->fault = DataAccess::Database::Failure::Kind::Unavailable;
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

    void whatCouldNotBeWrittenIsWrittenLater_data() { addBackends(); }
    void whatCouldNotBeWrittenIsWrittenLater()
    {
        ContextDatabase database;
        const auto context = database.cableContext();
        const QSignalSpy failed(context.get(), &AbstractContext::savingFailed);
        SampleNetwork network(1);
        const auto station = network.cables[0]->StationA();
        const QString name = station->Name();
        station->SetName(QStringLiteral("a") + QChar(0) + QStringLiteral("b"));
        network.attachTo(*context);
        const auto changed = makeOwner(QStringLiteral("no id"));
        changed->SetId(QUuid());
        context->attach(changed);
        context->saveChanges();
        QCOMPARE(failed.count(), 1);
        QCOMPARE(database.value(QStringLiteral("SELECT count(*) FROM ce_station")).toInt(), 0);
        QCOMPARE(database.value(QStringLiteral("SELECT count(*) FROM ce_segment")).toInt(), 20);
        QCOMPARE(std::dynamic_pointer_cast<Station>(station)->EntityState(), New);

        station->SetName(name);
        context->saveChanges();
        QCOMPARE(database.value(QStringLiteral("SELECT count(*) FROM ce_station")).toInt(), 2);
        QCOMPARE(changed->EntityState(), New);

        const auto cable = network.cables[0];
        const QDateTime written = cable->Timestamp();
        cable->SetComment(QString(QChar(0xd800)));
        context->saveChanges();
        QCOMPARE(cable->EntityState(), Modified);
        QCOMPARE(cable->Timestamp(), written);
        cable->SetComment(QStringLiteral("mended"));
        context->saveChanges();
        QCOMPARE(database.value(QStringLiteral("SELECT comment FROM ce_cable")).toString(), QStringLiteral("mended"));
    }
};

DATAACCESS_TEST(CableSavingTest)

#include "CableSavingTest.moc"
