#include "EntityChecks.h"
#include "entities/cables/Cable.h"
#include "entities/cables/Rating.h"
#include "entities/cables/Station.h"
#include "entities/pd/PdFile.h"
#include "entities/pd/PdIecOverview.h"
#include "entities/pd/PdLbDiagram.h"
#include "entities/pd/PdMappingEvent.h"
#include "entities/pd/PdReport.h"
#include "entities/pd/PdSummary.h"
#include "entities/pd/PdTask.h"
#include "entities/pd/PdTaskInfo.h"
#include "support/TestMain.h"

using namespace PD::Entities;
using namespace QOR::Entities::Enumerations;
using TestSupport::make;

using Filter = QHash<QString, QString>;
using Times = QList<QDateTime>;

namespace {

/// A task with one of everything that it owns.
std::shared_ptr<PdTask> makeTask()
{
    const auto report = make<PdReport>();
    report->SetFiles({make<PdFile>(), make<PdFile>()});
    report->SetLbDiagram(make<PdLbDiagram>());
    report->setSummary(make<PdSummary>());
    report->setTaskInfo(make<PdTaskInfo>());
    report->setIecOverview({make<PdIecOverview>(), make<PdIecOverview>()});
    const auto event = make<PdMappingEvent>();
    report->setMappingEvents({event, nullptr, make<PdMappingEvent>(), event}); // Two: lists leave out the others.
    auto task = make<PdTask>();
    task->SetReports({report});
    return task;
}

/// The report and all that it owns, each as the entity that it is.
std::vector<std::shared_ptr<QOR::Entities::Entity>> familyOf(const std::shared_ptr<Interfaces::IPdReport>& report)
{
    std::vector<std::shared_ptr<QOR::Entities::Entity>> family;
    const auto add = [&family](const auto& member) {
        family.push_back(std::dynamic_pointer_cast<QOR::Entities::Entity>(member));
    };
    add(report);
    std::for_each(report->Files().begin(), report->Files().end(), add);
    add(report->LbDiagram());
    add(report->Summary());
    add(report->TaskInfo());
    std::for_each(report->IecOverview().begin(), report->IecOverview().end(), add);
    std::for_each(report->MappingEvents().begin(), report->MappingEvents().end(), add);
    return family;
}

} // namespace

/// How the partial-discharge entities hold together.
class PdEntitiesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void filter_data()
    {
        QTest::addColumn<Filter>("held");
        QTest::addColumn<Filter>("given");
        QTest::addColumn<bool>("changes");
        const QString key = QStringLiteral("key");
        const QString empty = QStringLiteral("");
        QTest::newRow("none") << Filter() << Filter() << false;
        QTest::newRow("same") << Filter{{key, key}, {empty, empty}} << Filter{{empty, empty}, {key, key}} << false;
        QTest::newRow("another value") << Filter{{key, key}} << Filter{{key, empty}} << true;
        QTest::newRow("a key less") << Filter{{key, key}, {empty, key}} << Filter{{key, key}} << true;
        QTest::newRow("empty in place of null") << Filter{{key, QString()}} << Filter{{key, empty}} << true;
        QTest::newRow("null in place of empty") << Filter{{key, empty}} << Filter{{key, QString()}} << true;
        QTest::newRow("empty key in place of null") << Filter{{QString(), key}} << Filter{{empty, key}} << true;
    }
    void filter()
    {
        QFETCH(Filter, held);
        QFETCH(Filter, given);
        QFETCH(bool, changes);
        PdReport report;
        report.SetFilter(held);
        report.SetEntityState(Normal);
        report.SetFilter(given);
        QCOMPARE(report.EntityState(), changes ? Modified : Normal);
        QCOMPARE(report.Filter(), given);
    }

    void latestReport_data()
    {
        QTest::addColumn<Times>("times");
        QTest::addColumn<int>("latest");
        const QDateTime none;
        const QDateTime early(QDate(1950, 1, 1), QTime(0, 0), Qt::UTC);
        const QDateTime late(QDate(2020, 1, 1), QTime(12, 0), Qt::UTC);
        // The same instant as `late` and a little earlier, though the clock there shows less and more.
        const QDateTime lateWest = late.toOffsetFromUtc(-36000);
        const QDateTime earlierEast = late.addMSecs(-1).toOffsetFromUtc(36000);
        QTest::newRow("no report") << Times() << -1;
        QTest::newRow("one without time") << Times{none} << 0;
        QTest::newRow("none with time") << Times{none, none} << 1;
        QTest::newRow("without time is oldest") << Times{none, early, none} << 1;
        QTest::newRow("in the middle") << Times{early, late, none, early} << 1;
        QTest::newRow("first") << Times{late, early} << 0;
        QTest::newRow("one time twice") << Times{late, early, late, early} << 2;
        QTest::newRow("one instant in two zones") << Times{late, lateWest} << 1;
        QTest::newRow("earlier instant, later clock") << Times{late, earlierEast} << 0;
    }
    void latestReport()
    {
        QFETCH(Times, times);
        QFETCH(int, latest);
        std::vector<std::shared_ptr<Interfaces::IPdReport>> reports;
        for (const QDateTime& time : times) {
            reports.push_back(make<PdReport>());
            reports.back()->SetCreationTimestamp(time);
        }
        PdTask task;
        task.SetReports(reports);
        QCOMPARE(task.ReportLatest(), latest < 0 ? nullptr : reports[size_t(latest)]);
    }

    void linkingWhatIsStoredChangesNothing()
    {
        const auto task = makeTask();
        const auto report = std::dynamic_pointer_cast<PdReport>(task->Reports().front());
        const auto family = familyOf(report);
        task->SetEntityState(Normal);
        for (const auto& entity : family)
            entity->SetEntityState(Normal);
        const QJsonObject before = report->toJson();

        const std::vector<std::shared_ptr<Interfaces::IPdMappingEvent>> events = report->MappingEvents();
        report->LinkMappingEvents({});
        report->LinkMappingEvents(events);
        report->SetFiles(std::vector<std::shared_ptr<Interfaces::IPdFile>>(report->Files()));
        const auto summary = report->Summary();
        report->LinkSummary(nullptr);
        report->setSummary(summary);
        task->LinkReports({});
        task->SetReports({report});
        task->SetRating(make<Cables::Entities::Rating>());

        QCOMPARE(task->EntityState(), Normal);
        for (const auto& entity : family)
            QCOMPARE(entity->EntityState(), Normal);
        QCOMPARE(report->toJson(), before);
    }

    void droppingTheTaskFreesAllItOwns()
    {
        auto task = makeTask();
        const auto cable = make<Cables::Entities::Cable>();
        const auto station = make<Cables::Entities::Station>();
        const auto rating = make<Cables::Entities::Rating>();
        task->SetCable(cable);
        task->SetStation(station);
        task->SetRating(rating);
        std::shared_ptr<Interfaces::IPdReport> report = task->Reports().front();
        const std::shared_ptr<Interfaces::IPdFile> file = report->Files().front();
        std::vector<std::weak_ptr<QOR::Entities::Entity>> owned;
        for (const auto& entity : familyOf(report))
            owned.emplace_back(entity);

        const QUuid taskId = task->Id();
        task.reset();
        QVERIFY(!report->Task());
        QCOMPARE(report->TaskId(), taskId);
        QCOMPARE(cable.use_count(), 1);
        QCOMPARE(station.use_count(), 1);
        QCOMPARE(rating.use_count(), 1);

        const QUuid reportId = report->Id();
        report.reset();
        QVERIFY(!file->Report());
        QCOMPARE(file->ReportId(), reportId);
        const auto alive =
            std::count_if(owned.begin(), owned.end(), [](const auto& entity) { return !entity.expired(); });
        QCOMPARE(alive, 1);
    }
};

DATAACCESS_TEST(PdEntitiesTest)

#include "PdEntitiesTest.moc"
