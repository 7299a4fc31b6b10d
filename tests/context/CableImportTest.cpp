#include "context/ContextDatabase.h"
#include "context/SampleNetwork.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"

#include <QRegularExpression>
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

std::shared_ptr<CableContext> loadedWithoutImages(ContextDatabase& database)
{
    constexpr auto strategy = DataAccess::Enumerations::WithoutImages;
    const auto manager = Factories::EditorRepositoryManagerFactory().create(database.worker().get(), strategy);
    auto context = std::make_shared<CableContext>(strategy, manager, 0);
    context->reload();
    return context;
}

/// All but the time stamps of what describe() gives.
QByteArray withoutTimes(const QByteArray& text)
{
    static const QRegularExpression time(QStringLiteral("\"timestamp\":(null|\"[^\"]*\")"));
    return QString::fromUtf8(text).remove(time).toUtf8();
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
        import.cables().front()->SetQrCode("code");
        import.cables().front()->SetRatingMeasureID(QStringLiteral("7"));
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

        QCOMPARE(withoutTimes(describe(*target)), withoutTimes(before));
        target->Cables().begin().value()->SetQrCode({});
        target->Cables().begin().value()->SetRatingMeasureID({});
        QCOMPARE(describe(*import.to.loadedCableContext()), describe(*target));
    }

    void whatIsMissingHereIsCompleted_data() { addBackends(); }
    void whatIsMissingHereIsCompleted()
    {
        Import import;
        const auto importOnce = [&import] {
            const auto target = import.to.loadedCableContext();
            target->import(import.cables());
            target->saveChanges();
            return import.to.loadedCableContext();
        };
        const auto exec = [&to = import.to](const QString& statement) {
            to.worker().run([&statement](DataAccess::Interfaces::IDatabase& db) { db.Exec(statement); });
        };
        const QByteArray complete = withoutTimes(describe(*importOnce()));
        for (const char* lost :
             {"point insulation segmenttype", "segment_detail station owner termination switchgear route",
              "phase point", "segment", "station segment_detail"}) {
            for (const QString& table : QString::fromLatin1(lost).split(QLatin1Char(' ')))
                exec(QStringLiteral("DELETE FROM ce_") + table);
            exec(QStringLiteral("UPDATE ce_station SET image = NULL"));
            exec(QStringLiteral("DELETE FROM qor_rating"));
            QCOMPARE(withoutTimes(describe(*importOnce())), complete);
        }
        // Completed with what is here under another id.
        const auto context = import.to.loadedCableContext();
        const auto detail = context->SegmentDetails().value(sampleId(QStringLiteral("section")));
        const auto standIn = std::make_shared<Insulation>();
        standIn->SetId(sampleId(QStringLiteral("stand-in")));
        standIn->SetName(detail->Insulation()->Name());
        standIn->SetVelocity(detail->Insulation()->Velocity());
        exec(QStringLiteral("DELETE FROM ce_insulation"));
        context->attach(standIn);
        context->saveChanges();
        QCOMPARE(importOnce()->SegmentDetails().value(detail->Id())->InsulationId(), standIn->Id());
        // Overwritten by a source that does not have its own at hand.
        const auto newer = import.source->SegmentDetails().value(detail->Id());
        const QUuid lost = newer->InsulationId();
        newer->SetInsulation(nullptr);
        newer->SetInsulationId(lost);
        newer->SetName(QStringLiteral("renamed"));
        newer->SetTimestamp(QDateTime::currentDateTimeUtc().addDays(1));
        const auto overwritten = importOnce()->SegmentDetails().value(detail->Id());
        QCOMPARE(overwritten->InsulationId(), standIn->Id());
        QCOMPARE(overwritten->Name(), newer->Name());
    }

    void imagesComeLater_data() { addBackends(); }
    void imagesComeLater()
    {
        Import import;
        const auto bare = loadedWithoutImages(import.from);
        const QUuid id = sampleId(QStringLiteral("cable 0 A"));
        const auto importInto = [&](const CableContext& source, const std::shared_ptr<CableContext>& target) {
            target->import({source.Cables().begin().value()});
            target->saveChanges();
            return import.to.loadedCableContext()->Stations().value(id)->Image();
        };
        QVERIFY(importInto(*bare, import.to.loadedCableContext()).isNull());
        const QImage image = importInto(*import.source, import.to.loadedCableContext());
        QCOMPARE(image.size(), QSize(2, 2));
        // Where the images were not loaded, none is missing.
        import.source->Stations().value(id)->SetImage(image.mirrored().scaled(3, 3));
        QCOMPARE(importInto(*import.source, loadedWithoutImages(import.to)), image);
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
