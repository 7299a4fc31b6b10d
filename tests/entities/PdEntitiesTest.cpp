#include "PropertyRows.h"
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
using TestSupport::addProperty;
using TestSupport::addReference;
using TestSupport::Storage;

using Filter = QHash<QString, QString>;
using Times = QList<QDateTime>;

namespace {

template <typename T>
std::shared_ptr<T> make()
{
    auto entity = std::make_shared<T>();
    entity->SetId(QUuid::createUuid());
    return entity;
}

/// A task with one of everything that it owns.
std::shared_ptr<PdTask> makeTask()
{
    const auto report = make<PdReport>();
    report->SetFiles({make<PdFile>(), make<PdFile>()});
    report->SetLbDiagram(make<PdLbDiagram>());
    report->setSummary(make<PdSummary>());
    report->setTaskInfo(make<PdTaskInfo>());
    report->setIecOverview({make<PdIecOverview>(), make<PdIecOverview>()});
    report->setMappingEvents({make<PdMappingEvent>(), make<PdMappingEvent>()});
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

/// The properties of the partial-discharge entities, and how the entities hold together.
class PdEntitiesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void property_data();
    void property();
    void filter_data();
    void filter();
    void latestReport_data();
    void latestReport();
    void ownersGiveTheirId();
    void linkingWhatIsStoredChangesNothing();
    void droppingTheTaskFreesAllItOwns();
    void listsLeaveOutNullAndRepeatedEntries();

private:
    static void taskRows();
    static void reportRows();
    static void overviewRows();
    static void partRows();
};

void PdEntitiesTest::property_data()
{
    QTest::addColumn<std::function<void()>>("check");
    taskRows();
    reportRows();
    overviewRows();
    partRows();
}

void PdEntitiesTest::property()
{
    QFETCH(std::function<void()>, check);
    check();
}

void PdEntitiesTest::taskRows()
{
    using E = PdTask;
    const char* name = "PdTask";
    const QString text = QStringLiteral("O'Neill \"ü\"");
    const QStringList devices = {text, QString()};
    addReference<E, Cables::Entities::Cable>(name, "cableId", &E::CableId, &E::SetCableId, &E::Cable, &E::SetCable);
    addReference<E, Cables::Entities::Station>(name, "stationId", &E::StationId, &E::SetStationId, &E::Station,
                                               &E::SetStation);
    addProperty<E>(name, "creationDate", &E::CreationDate, &E::SetCreationDate, QDateTime::currentDateTimeUtc());
    addProperty<E>(name, "tester", &E::Tester, &E::SetTester, text);
    addProperty<E>(name, "path", &E::Path, &E::SetPath, text);
    addProperty<E>(name, "comment", &E::Comment, &E::SetComment, text);
    addProperty<E>(name, "devices", &E::Devices, &E::SetDevices, devices);
    addProperty<E>(name, "devices", &E::DevicesText, &E::SetDevicesFromText, text);
    addProperty<E>(name, "kvtrRecommentations", &E::KvtrRecommentations, &E::SetKvtrRecommentation, text);
    addProperty<E>(name, "maxVoltage", &E::MaxVoltage, &E::SetMaxVoltage, 0.0, Storage::MemoryOnly);
    addProperty<E>(name, "pdiv", &E::Pdiv, &E::SetPdiv, 0.0, Storage::MemoryOnly);
    addProperty<E>(name, "pdev", &E::Pdev, &E::SetPdev, 0.0, Storage::MemoryOnly);
}

void PdEntitiesTest::reportRows()
{
    using R = PdReport;
    const QString text = QStringLiteral("O'Neill \"ü\"");
    addReference<R, PdTask>("PdReport", "taskId", &R::TaskId, &R::SetTaskId, &R::Task, &R::SetTask);
    addProperty<R>("PdReport", "creationTimestamp", &R::CreationTimestamp, &R::SetCreationTimestamp,
                   QDateTime::fromMSecsSinceEpoch(0, Qt::UTC));
    addProperty<R>("PdReport", "flags", &R::Flags, &R::SetFlags, -1);
    addProperty<R>("PdReport", "recommentation", &R::Recommentation, &R::SetRecommentation, text);
    addProperty<R>("PdReport", "filter", &R::Filter, &R::SetFilter, Filter{{text, QString()}});

    using F = PdFile;
    addProperty<F>("PdFile", "name", &F::Name, &F::SetName, text);
    addProperty<F>("PdFile", "file", &F::File, &F::SetFile, QByteArray("a\0\xff", 3));
    addProperty<F>("PdFile", "hash", &F::Hash, &F::SetHash, QByteArray(""));
    addReference<F, R>("PdFile", "reportId", &F::ReportId, &F::SetReportId, &F::Report, &F::SetReport);
}

void PdEntitiesTest::overviewRows()
{
    using E = PdIecOverview;
    const char* name = "PdIecOverview";
    addProperty<E>(name, "reportId", &E::reportId, &E::setReportId, QUuid::createUuid());
    addProperty<E>(name, "phaseIndex", &E::phaseIndex, &E::setPhaseIndex, 2);
    addProperty<E>(name, "groundNoise", &E::groundNoise, &E::setGroundNoise, 0.0);
    addProperty<E>(name, "sensitivityLevel", &E::sensitivityLevel, &E::setSensitivityLevel, 0.0);
    addProperty<E>(name, "frequency", &E::frequency, &E::setFrequency, 0.0);
    addProperty<E>(name, "pdivVoltage", &E::pdivVoltage, &E::setPdivVoltage, 0.0);
    addProperty<E>(name, "pdevVoltage", &E::pdevVoltage, &E::setPdevVoltage, 0.0);
    addProperty<E>(name, "pdivMaxCharge", &E::pdivMaxCharge, &E::setPdivMaxCharge, 0.0);

    const QString text = QStringLiteral("{\"20400\":1.5e-12}");
    const auto setMax = [](E& entity, const QString& charges) { entity.setMaxCharges(charges); };
    const auto setMed = [](E& entity, const QString& charges) { entity.setMedCharges(charges); };
    addProperty<E>(name, "maxCharges", &E::maxChargesText, setMax, text);
    addProperty<E>(name, "medCharges", &E::medChargesText, setMed, text);
    const auto setMaxAt = [](E& entity, double charge) { entity.setMaxCharges(QMap<double, double>{{20400, charge}}); };
    const auto setMedAt = [](E& entity, double charge) { entity.setMedCharges(QMap<double, double>{{20400, charge}}); };
    const auto maxAt = [](const E& entity) { return entity.maxChargeAtVoltage(20400); };
    const auto medAt = [](const E& entity) { return entity.medChargeAtVoltage(20400); };
    addProperty<E>(name, "maxCharges", maxAt, setMaxAt, 1.5e-12);
    addProperty<E>(name, "medCharges", medAt, setMedAt, 1.5e-12);
}

void PdEntitiesTest::partRows()
{
    const QUuid id = QUuid::createUuid();
    const QString text = QStringLiteral("O'Neill \"ü\"");

    using M = PdMappingEvent;
    addProperty<M>("PdMappingEvent", "reportId", &M::reportId, &M::setReportId, id);
    addProperty<M>("PdMappingEvent", "load", &M::load, &M::setLoad, 0.0);
    addProperty<M>("PdMappingEvent", "voltage", &M::voltage, &M::setVoltage, 0.0);
    addProperty<M>("PdMappingEvent", "position", &M::position, &M::setPosition, 0.0);
    addProperty<M>("PdMappingEvent", "phaseIndex", &M::phaseIndex, &M::setPhaseIndex, -1);
    addProperty<M>("PdMappingEvent", "classification", &M::classification, &M::setClassification, -1);
    addProperty<M>("PdMappingEvent", "mode", &M::mode, &M::setMode, -1);
    addProperty<M>("PdMappingEvent", "polarity", &M::polarity, &M::setPolarity, true);

    using D = PdLbDiagram;
    addProperty<D>("PdLbDiagram", "reportId", &D::reportId, &D::setReportId, id);
    addProperty<D>("PdLbDiagram", "phase1Visible", &D::phase1Visible, &D::setPhase1Visible, true);
    addProperty<D>("PdLbDiagram", "phase2Visible", &D::phase2Visible, &D::setPhase2Visible, true);
    addProperty<D>("PdLbDiagram", "phase3Visible", &D::phase3Visible, &D::setPhase3Visible, true);
    addProperty<D>("PdLbDiagram", "filterClass", &D::filterClass, &D::setFilterClass, 4000000000U);
    addProperty<D>("PdLbDiagram", "filterVoltageMin", &D::filterVoltageMin, &D::setFilterVoltageMin, 0.0);
    addProperty<D>("PdLbDiagram", "filterVoltageMax", &D::filterVoltageMax, &D::setFilterVoltageMax, 0.0);

    using S = PdSummary;
    addProperty<S>("PdSummary", "reportId", &S::reportId, &S::setReportId, id);
    addProperty<S>("PdSummary", "pdivState", &S::pdivState, &S::setPdivState, true);
    addProperty<S>("PdSummary", "pdevState", &S::pdevState, &S::setPdevState, true);
    addProperty<S>("PdSummary", "noiseState", &S::noiseState, &S::setNoiseState, true);
    addProperty<S>("PdSummary", "dataState", &S::dataState, &S::setDataState, true);
    addProperty<S>("PdSummary", "vwdState", &S::vwdState, &S::setVwdState, true);
    addProperty<S>("PdSummary", "dacPosState", &S::dacPosState, &S::setDacPosState, true);
    addProperty<S>("PdSummary", "dacNegState", &S::dacNegState, &S::setDacNegState, true);
    addProperty<S>("PdSummary", "vlfCrState", &S::vlfCrState, &S::setVlfCrState, true);
    addProperty<S>("PdSummary", "vlfSinState", &S::vlfSinState, &S::setVlfSinState, true);
    addProperty<S>("PdSummary", "maxAppliedVoltage", &S::maxAppliedVoltage, &S::setMaxAppliedVoltage, 0.0);

    using I = PdTaskInfo;
    addProperty<I>("PdTaskInfo", "reportId", &I::reportId, &I::setReportId, id);
    addProperty<I>("PdTaskInfo", "softwareVersion", &I::softwareVersion, &I::setSoftwareVersion, text);
    addProperty<I>("PdTaskInfo", "systemType", &I::systemType, &I::setSystemType, text);
    addProperty<I>("PdTaskInfo", "serialNumber", &I::serialNumber, &I::setSerialNumber, text);
    addProperty<I>("PdTaskInfo", "calibrationDate", &I::calibrationDate, &I::setCalibrationDate,
                   QDateTime::currentDateTimeUtc());
}

void PdEntitiesTest::filter_data()
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

void PdEntitiesTest::filter()
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

void PdEntitiesTest::latestReport_data()
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

void PdEntitiesTest::latestReport()
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

void PdEntitiesTest::ownersGiveTheirId()
{
    const auto task = makeTask();
    const auto report = task->Reports().front();
    QCOMPARE(report->Task().get(), task.get());
    QCOMPARE(report->TaskId(), task->Id());
    int parts = 0;
    for (const auto& entity : familyOf(report)) {
        if (const auto part = std::dynamic_pointer_cast<Interfaces::IPdReportPart>(entity)) {
            QCOMPARE(part->reportId(), report->Id());
            ++parts;
        } else if (const auto file = std::dynamic_pointer_cast<Interfaces::IPdFile>(entity)) {
            QCOMPARE(file->Report(), report);
            QCOMPARE(file->ReportId(), report->Id());
        }
    }
    QCOMPARE(parts, 7);

    // An owner that no shared pointer holds cannot be referred to: its id is all that its children get.
    PdTask local;
    local.SetId(QUuid::createUuid());
    local.SetReports({report});
    QCOMPARE(report->TaskId(), local.Id());
    QVERIFY(!report->Task());
}

void PdEntitiesTest::linkingWhatIsStoredChangesNothing()
{
    const auto task = makeTask();
    const auto report = std::dynamic_pointer_cast<PdReport>(task->Reports().front());
    const auto family = familyOf(report);
    task->SetEntityState(Normal);
    for (const auto& entity : family)
        entity->SetEntityState(Normal);
    const QJsonObject before = report->toJson();

    const std::vector<std::shared_ptr<Interfaces::IPdMappingEvent>> events = report->MappingEvents();
    report->setMappingEvents({});
    report->setMappingEvents(events);
    report->SetFiles(std::vector<std::shared_ptr<Interfaces::IPdFile>>(report->Files()));
    const auto summary = report->Summary();
    report->setSummary(nullptr);
    report->setSummary(summary);
    task->SetReports({});
    task->SetReports({report});
    task->SetRating(make<Cables::Entities::Rating>());

    QCOMPARE(task->EntityState(), Normal);
    for (const auto& entity : family)
        QCOMPARE(entity->EntityState(), Normal);
    QCOMPARE(report->toJson(), before);
}

void PdEntitiesTest::droppingTheTaskFreesAllItOwns()
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
    const auto alive = std::count_if(owned.begin(), owned.end(), [](const auto& entity) { return !entity.expired(); });
    QCOMPARE(alive, 1);
}

void PdEntitiesTest::listsLeaveOutNullAndRepeatedEntries()
{
    const auto first = make<PdMappingEvent>();
    const auto second = make<PdMappingEvent>();
    PdReport report;
    report.setMappingEvents({second, nullptr, first, second});
    QCOMPARE(report.MappingEvents(), (std::vector<std::shared_ptr<Interfaces::IPdMappingEvent>>{second, first}));
}

DATAACCESS_TEST(PdEntitiesTest)

#include "PdEntitiesTest.moc"
