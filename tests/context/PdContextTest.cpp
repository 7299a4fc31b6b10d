#include "context/ContextDatabase.h"
#include "context/SampleNetwork.h"
#include "repositories/pd/PdFileRepository.h"
#include "repositories/pd/PlainRepositories.h"
#include "support/TestMain.h"

#include <QSignalSpy>
#include <QTest>

using namespace DataAccess;
using namespace PD::Entities;
using namespace QOR::Entities::Enumerations;
using namespace TestSupport;
using Context::PdContext;

namespace {

template <typename T>
std::shared_ptr<T> make(PdContext& context, const QString& name)
{
    auto entity = std::make_shared<T>();
    entity->SetId(sampleId(name));
    context.attach(entity);
    return entity;
}

template <typename T>
std::shared_ptr<T> makePart(PdContext& context, const QString& name, const QUuid& report)
{
    auto part = make<T>(context, name);
    part->setReportId(report);
    return part;
}

/// Attaches a task of the first sample cable with two reports, the first of which has every kind of result.
void attachTask(PdContext& context)
{
    const auto task = make<PdTask>(context, QStringLiteral("task"));
    task->SetCableId(sampleId(QStringLiteral("cable 0")));
    task->SetStationId(sampleId(QStringLiteral("cable 0 A")));
    for (int i = 0; i < 2; ++i) {
        const auto report = make<PdReport>(context, QStringLiteral("report %1").arg(i));
        report->SetTaskId(task->Id());
        report->SetCreationTimestamp(QDateTime(QDate(2022, 5, 2 - i), QTime(9, 0)));
    }
    const QUuid report = sampleId(QStringLiteral("report 0"));
    makePart<PdSummary>(context, QStringLiteral("summary"), report);
    makePart<PdTaskInfo>(context, QStringLiteral("info"), report);
    makePart<PdLbDiagram>(context, QStringLiteral("diagram"), report);
    for (int i = 0; i < 3; ++i) {
        makePart<PdIecOverview>(context, QStringLiteral("overview %1").arg(i), report)->setPhaseIndex(2 - i);
        makePart<PdMappingEvent>(context, QStringLiteral("event %1").arg(i), report)->setPosition(100.0 - i);
        const auto file = make<PdFile>(context, QStringLiteral("file %1").arg(i));
        file->SetName(QStringLiteral("%1.dat").arg(2 - i));
        file->SetFile(QByteArray(10, char('0' + i)));
        file->SetReportId(i < 2 ? report : sampleId(QStringLiteral("report 1")));
    }
    const auto rating = make<Cables::Entities::Rating>(context, QStringLiteral("task rating"));
    rating->SetTaskID(task->Id());
}

} // namespace

class PdContextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everythingIsLinkedAndFilesComeOnRequest_data() { addBackends(); }
    void everythingIsLinkedAndFilesComeOnRequest()
    {
        ContextDatabase database;
        const auto source = database.pdContext();
        attachTask(*source);
        source->saveChanges();
        const QStringList rows = database.pdRows();
        QCOMPARE(rows.size(), 15);

        const auto context = database.pdContext();
        context->reload();
        const auto task = context->Tasks().value(sampleId(QStringLiteral("task")));
        QCOMPARE(task->Reports().size(), std::size_t(2));
        const auto report = task->ReportLatest();
        QCOMPARE(report->Id(), sampleId(QStringLiteral("report 0")));
        QCOMPARE(report->Task(), task);
        QCOMPARE(task->Rating()->Id(), sampleId(QStringLiteral("task rating")));
        QCOMPARE(report->Summary()->Id(), sampleId(QStringLiteral("summary")));
        QCOMPARE(report->TaskInfo()->Id(), sampleId(QStringLiteral("info")));
        QCOMPARE(report->LbDiagram()->Id(), sampleId(QStringLiteral("diagram")));
        QCOMPARE(report->IecOverview().at(0)->Id(), sampleId(QStringLiteral("overview 2")));
        QCOMPARE(report->MappingEvents().at(0)->Id(), sampleId(QStringLiteral("event 2")));
        QVERIFY(context->Files().isEmpty());
        QVERIFY(report->Files().empty());

        const QSignalSpy changed(context.get(), &PdContext::loadingChanged);
        const QSignalSpy completed(context.get(), &PdContext::loadingCompleted);
        context->loadFiles({});
        QCOMPARE(changed.count(), 2);
        QCOMPARE(completed.count(), 1);
        context->loadFiles({report->Id()});
        QCOMPARE(context->Files().size(), 2);
        QCOMPARE(report->Files().at(0)->File(), QByteArray(10, '1'));
        QCOMPARE(report->Files().at(0)->Report(), report);
        context->loadFiles();
        QCOMPARE(context->Files().size(), 3);
        context->saveChanges();
        QCOMPARE(database.pdRows(), rows);
    }

    void whatATaskOwnsIsSavedWithIt_data() { addBackends(); }
    void whatATaskOwnsIsSavedWithIt()
    {
        ContextDatabase database;
        const auto context = database.pdContext();
        const auto task = make<PdTask>(*context, QStringLiteral("task"));
        const auto with = [](auto entity, const char* name) {
            entity->SetId(sampleId(QString::fromLatin1(name)));
            return entity;
        };
        const auto report = with(std::make_shared<PdReport>(), "report");
        task->SetReports({report});
        task->SetRating(with(std::make_shared<Cables::Entities::Rating>(), "rating"));
        context->saveChanges();
        report->SetFiles({with(std::make_shared<PdFile>(), "file")});
        report->SetLbDiagram(with(std::make_shared<PdLbDiagram>(), "diagram"));
        report->setSummary(with(std::make_shared<PdSummary>(), "summary"));
        report->setTaskInfo(with(std::make_shared<PdTaskInfo>(), "info"));
        report->setIecOverview({with(std::make_shared<PdIecOverview>(), "overview")});
        report->setMappingEvents({with(std::make_shared<PdMappingEvent>(), "event")});
        context->saveChanges();
        QCOMPARE(database.pdRows().size(), 8);
        const auto loaded = database.pdContext();
        loaded->reload();
        QVERIFY(loaded->Tasks().value(task->Id())->Rating());
    }

    void whatCannotBeReadIsTold()
    {
        ContextDatabase database(DataAccess::Enumerations::SQLite3);
        const auto manager = database.pdManager();
        PdContext context(DataAccess::Enumerations::Complete, manager, 0);
        attachTask(context);
        context.saveChanges();
        context.reload();
        context.loadFiles();
        const QSignalSpy failed(&context, &PdContext::loadingFailed);
        const QSignalSpy completed(&context, &PdContext::loadingCompleted);
        const auto broken = [&](auto repository) {
            ContextDatabase other(DataAccess::Enumerations::SQLite3);
            using Repository = typename decltype(repository)::element_type;
            return std::make_shared<Repository>(other.worker().get(), DataAccess::Enumerations::Complete, nullptr);
        };
        manager->SetPdFileRepository(broken(manager->PdFileRepository()));
        context.loadFiles();
        QCOMPARE(failed.count(), 1);
        QVERIFY(failed.back().front().toString().startsWith(QStringLiteral("PdFile: ")));
        QCOMPARE(context.Files().size(), 3);
        QVERIFY(context.isLoaded());

        manager->SetPdSummaryRepository(broken(manager->PdSummaryRepository()));
        context.reload();
        QCOMPARE(failed.count(), 2);
        QVERIFY(failed.back().front().toString().startsWith(QStringLiteral("PdSummary: ")));
        QCOMPARE(completed.count(), 2);
        QVERIFY(!context.isLoaded() && context.Tasks().isEmpty() && context.count() == 0);
    }

    void tasksFollowTheCableContext()
    {
        ContextDatabase database(DataAccess::Enumerations::SQLite3);
        const auto cables = database.cableContext();
        SampleNetwork(1).attachTo(*cables);
        cables->saveChanges();
        const auto context = database.pdContext();
        context->SetCableContext(cables);
        attachTask(*context);
        context->saveChanges();
        context->reload();
        const auto task = context->Tasks().value(sampleId(QStringLiteral("task")));
        const std::weak_ptr<void> former = task->Cable();
        QVERIFY(!former.expired());
        QCOMPARE(task->Station(), task->Cable()->StationA());

        cables->reload();
        QVERIFY(former.expired());
        QCOMPARE(task->Cable(), cables->Cables().value(task->CableId()));
        QCOMPARE(task->EntityState(), Normal);

        const std::weak_ptr<void> removed = task->Cable();
        database.value(QStringLiteral("DELETE FROM ce_cable"));
        cables->reload();
        QVERIFY(removed.expired() && !task->Cable() && task->Station());
        QCOMPARE(task->CableId(), sampleId(QStringLiteral("cable 0")));
        const QStringList rows = database.pdRows();
        context->saveChanges();
        QCOMPARE(database.pdRows(), rows);
    }

    void aContextWithoutRepositoriesLoadsNothing()
    {
        for (const auto& manager :
             {std::shared_ptr<Manager::PdRepositoryManager>(), std::make_shared<Manager::PdRepositoryManager>()}) {
            PdContext context(DataAccess::Enumerations::Complete, manager, 0);
            const QSignalSpy completed(&context, &PdContext::loadingCompleted);
            const QSignalSpy saved(&context, &PdContext::savingCompleted);
            context.reload();
            context.loadFiles({sampleId(QStringLiteral("report"))});
            context.saveChanges();
            QCOMPARE(completed.count(), 2);
            QCOMPARE(saved.count(), 1);
            QCOMPARE(context.count(), 0U);
        }
    }
};

DATAACCESS_TEST(PdContextTest)

#include "PdContextTest.moc"
