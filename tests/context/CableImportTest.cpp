#include "context/ContextDatabase.h"
#include "context/SampleNetwork.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"

#include <QTest>

using namespace Cables::Entities;
using namespace DataAccess;
using namespace QOR::Entities::Enumerations;
using namespace TestSupport;
using Context::CableContext;

namespace {

/// The two databases of an import, the source with one sample cable.
struct Import
{
    explicit Import(DataAccess::Enumerations::DatabaseType type = currentBackend())
        : from(type)
        , to(type)
    {
        const auto context = from.cableContext();
        SampleNetwork(1).attachTo(*context);
        context->saveChanges();
        source = from.loadedCableContext();
    }

    std::vector<std::shared_ptr<Cable>> cables() const
    {
        return {source->Cables().value(sampleId(QStringLiteral("cable 0")))};
    }

    ContextDatabase from;
    ContextDatabase to;
    std::shared_ptr<CableContext> source;
};

/// Stores an owner of the name of the sample's under the id @p id, long ago or just now.
std::shared_ptr<Owner> storeOwner(ContextDatabase& database, const QUuid& id, bool isOld)
{
    auto owner = std::make_shared<Owner>();
    owner->SetId(id);
    owner->SetName(QStringLiteral("Grid"));
    const auto context = database.cableContext();
    context->attach(owner);
    context->saveChanges();
    if (isOld)
        database.worker().run([](DataAccess::Interfaces::IDatabase& db) {
            db.Exec(QStringLiteral("UPDATE ce_owner SET timestamp = '2001-01-01 00:00:00.000'"));
        });
    return owner;
}

} // namespace

class CableImportTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aCableComesWithAllItsParts_data() { addBackends(); }
    void aCableComesWithAllItsParts()
    {
        Import import;
        const QByteArray before = describe(*import.source);
        const QStringList rows = import.from.cableRows();
        const auto target = import.to.loadedCableContext();
        target->import(import.cables());
        QCOMPARE(describe(*import.source), before);
        QCOMPARE(target->Cables().size(), 1);
        QVERIFY(target->Cables().begin().value() != import.cables().front());
        QCOMPARE(target->Cables().begin().value()->Phases().at(1)->Segments().at(1)->Detail()->Type()->IsJoint(), true);
        target->saveChanges();
        import.source->saveChanges();
        QCOMPARE(import.from.cableRows(), rows);

        // All but the time stamps is equal.
        const auto strip = [](const QByteArray& text) {
            QByteArray stripped;
            for (const QByteArray& line : text.split('\n')) {
                const int at = line.indexOf("\"timestamp\"");
                const int end = at < 0 ? -1 : line.indexOf('"', line.indexOf(':', at) + 2) + 1;
                stripped += at < 0 ? line : line.left(at) + line.mid(end);
            }
            return stripped;
        };
        const auto loaded = import.to.loadedCableContext();
        QCOMPARE(strip(describe(*loaded)), strip(before));
        QCOMPARE(loaded->Stations().value(sampleId(QStringLiteral("cable 0 A")))->Image().size(), QSize(2, 2));
    }

    void importingAgainChangesNothing_data() { addBackends(); }
    void importingAgainChangesNothing()
    {
        Import import;
        // The first import into a context that was not loaded, and twice before it is saved.
        const auto target = import.to.cableContext();
        const auto attached = std::make_shared<Owner>();
        attached->SetId(sampleId(QStringLiteral("attached")));
        target->attach(attached);
        target->import(import.cables());
        target->import(import.cables());
        target->saveChanges();
        const QStringList rows = import.to.cableRows();
        QCOMPARE(rows.filter(QStringLiteral("ce_segment|")).size(), 20);
        QCOMPARE(rows.filter(QStringLiteral("ce_owner")).size(), 2);
        target->import(import.cables());
        target->saveChanges();
        const auto loaded = import.to.loadedCableContext();
        loaded->import(import.cables());
        loaded->saveChanges();
        QCOMPARE(import.to.cableRows(), rows);
    }

    void entitiesMatchByIdAndThenByName_data()
    {
        QTest::addColumn<int>("backend");
        QTest::addColumn<QUuid>("id");
        QTest::addColumn<bool>("isOld");
        const QUuid other = sampleId(QStringLiteral("another owner"));
        const QUuid same = sampleId(QStringLiteral("owner"));
        QTest::newRow("by name, newer here") << int(DataAccess::Enumerations::SQLite3) << other << false;
        QTest::newRow("by name, older here") << int(DataAccess::Enumerations::Postgres) << other << true;
        QTest::newRow("by id, newer here") << int(DataAccess::Enumerations::Postgres) << same << false;
        QTest::newRow("by id, older here") << int(DataAccess::Enumerations::SQLite3) << same << true;
    }
    void entitiesMatchByIdAndThenByName()
    {
        QFETCH(QUuid, id);
        QFETCH(bool, isOld);
        Import import;
        const bool isByName = id != sampleId(QStringLiteral("owner"));
        storeOwner(import.to, id, isOld);
        if (!isByName)
            import.cables().front()->Owner()->SetName(QStringLiteral("Renamed"));
        const auto target = import.to.loadedCableContext();
        target->import(import.cables());
        target->saveChanges();

        const auto loaded = import.to.loadedCableContext();
        QCOMPARE(loaded->Owners().size(), 1);
        const auto owner = loaded->Owners().value(id);
        QCOMPARE(loaded->Cables().begin().value()->Owner(), owner);
        QCOMPARE(owner->Name(), isOld && !isByName ? QStringLiteral("Renamed") : QStringLiteral("Grid"));
    }

    void whatWasDeletedHereComesBack()
    {
        Import import(DataAccess::Enumerations::SQLite3);
        const auto target = import.to.loadedCableContext();
        target->import(import.cables());
        target->saveChanges();
        target->Cables().begin().value()->SetEntityState(Deleted);
        for (const auto& segment : target->Segments())
            segment->SetEntityState(Deleted);
        target->saveChanges();
        QVERIFY(target->Cables().isEmpty());
        target->import(import.cables());
        target->saveChanges();
        QCOMPARE(target->Cables().size(), 1);
        const auto loaded = import.to.loadedCableContext();
        QCOMPARE(loaded->Cables().begin().value()->EntityState(), Normal);
        QCOMPARE(loaded->Cables().begin().value()->Phases().at(0)->Segments().size(), std::size_t(7));

        // With its cable here, a segment that was taken out stays out.
        loaded->Segments().value(sampleId(QStringLiteral("cable 0 segment 0.6")))->SetEntityState(Deleted);
        loaded->saveChanges();
        loaded->import(import.cables());
        loaded->saveChanges();
        QCOMPARE(import.to.loadedCableContext()->Cables().begin().value()->Phases().at(0)->Segments().size(),
                 std::size_t(6));
    }

    void missingPartsAreToldOnce()
    {
        Import import(DataAccess::Enumerations::SQLite3);
        const auto cable = std::make_shared<Cable>();
        cable->SetId(sampleId(QStringLiteral("bare")));
        cable->SetOwnerId(sampleId(QStringLiteral("gone")));
        cable->SetRouteId(sampleId(QStringLiteral("gone too")));
        const LogCapture log;
        const auto target = import.to.loadedCableContext();
        target->import({nullptr, cable, std::make_shared<Cable>()});
        const QStringList warnings = log.messages(QtWarningMsg, QStringLiteral("qor.context"));
        QCOMPARE(warnings.size(), 2);
        QVERIFY(warnings.front().contains(cable->Id().toString()));
        target->saveChanges();
        QCOMPARE(import.to.loadedCableContext()->Cables().value(cable->Id())->OwnerId(), cable->OwnerId());
    }

    void allRatingsComeFromAContext()
    {
        Import import(DataAccess::Enumerations::SQLite3);
        const auto older = std::make_shared<Rating>();
        older->SetId(sampleId(QStringLiteral("older")));
        older->SetCableID(import.cables().front()->Id());
        import.source->attach(older);
        const auto target = import.to.loadedCableContext();
        target->import(import.cables(), *import.source);
        target->saveChanges();
        QCOMPARE(import.to.loadedCableContext()->Ratings().size(), 2);
    }
};

DATAACCESS_TEST(CableImportTest)

#include "CableImportTest.moc"
