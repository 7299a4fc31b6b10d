#include "context/ContextDatabase.h"
#include "context/SampleNetwork.h"
#include "support/TestMain.h"

#include <QSignalSpy>
#include <QTest>

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

    void anEntityIsNeverInsertedTwice_data() { addBackends(); }
    void anEntityIsNeverInsertedTwice()
    {
        ContextDatabase database;
        const auto first = database.cableContext();
        const auto owner = makeOwner(QStringLiteral("Grid"));
        first->attach(owner);
        first->attach(makeOwner(QStringLiteral("Other")));
        first->saveChanges();
        const QStringList before = database.cableRows();

        // Another context, with nothing loaded, gets an unchanged one, a changed one and a new one.
        const auto second = database.cableContext();
        const auto changed = makeOwner(QStringLiteral("Other"));
        changed->SetName(QStringLiteral("Another"));
        second->attach(owner);
        second->attach(changed);
        second->attach(makeOwner(QStringLiteral("Third")));
        second->saveChanges();
        QCOMPARE(changedRows(before, database.cableRows()).size(), 2);
        QCOMPARE(database.value(QStringLiteral("SELECT count(*) FROM ce_owner")).toInt(), 3);
        QCOMPARE(database.value(QStringLiteral("SELECT count(*) FROM ce_owner WHERE name = 'Another'")).toInt(), 1);
    }

    void marksOfRowsSurviveLaterChanges_data() { addBackends(); }
    void marksOfRowsSurviveLaterChanges()
    {
        ContextDatabase database;
        const auto context = database.cableContext();
        const auto owner = makeOwner(QStringLiteral("Grid"));
        context->attach(owner);
        context->saveChanges();
        owner->SetEntityState(Deleted);
        context->saveChanges();
        QCOMPARE(owner->EntityState(), Normal);
        owner->SetName(QStringLiteral("Former grid"));
        context->saveChanges();
        const QString deletedRows =
            QStringLiteral("SELECT count(*) FROM ce_owner WHERE name = 'Former grid' AND deleted = %1")
                .arg(database.type() == DataAccess::Enumerations::Postgres ? QStringLiteral("true")
                                                                           : QStringLiteral("1"));
        QCOMPARE(database.value(deletedRows).toInt(), 1);
        QVERIFY(context->Owners().isEmpty());

        context->reload();
        QCOMPARE(context->count(), database.loadedCableContext()->count());
        const auto stored = context->Owners().value(owner->Id());
        QCOMPARE(stored->EntityState(), Deleted);
        stored->SetEntityState(Modified);
        context->saveChanges();
        QCOMPARE(database.value(deletedRows).toInt(), 0);
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

    void whatIsDetachedIsNotSaved()
    {
        ContextDatabase database(DataAccess::Enumerations::SQLite3);
        const auto context = database.cableContext();
        const auto owner = makeOwner(QStringLiteral("Grid"));
        context->attach(owner);
        context->saveChanges();
        context->detach(owner);
        owner->SetName(QStringLiteral("changed"));
        context->attach(makeOwner(QStringLiteral("new")));
        context->detach(makeOwner(QStringLiteral("new")));
        context->saveChanges();
        QCOMPARE(database.value(QStringLiteral("SELECT count(*) FROM ce_owner WHERE name = 'Grid'")).toInt(), 1);
        QCOMPARE(database.value(QStringLiteral("SELECT count(*) FROM ce_owner")).toInt(), 1);
    }
};

DATAACCESS_TEST(CableSavingTest)

#include "CableSavingTest.moc"
