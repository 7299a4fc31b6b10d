#include "repositories/PdDatabase.h"
#include "repositories/RoundTrip.h"
#include "repositories/pd/PdFileRepository.h"
#include "repositories/pd/PdIecOverviewRepository.h"
#include "repositories/pd/PdLbDiagramRepository.h"
#include "repositories/pd/PdMappingEventRepository.h"
#include "repositories/pd/PdReportRepository.h"
#include "repositories/pd/PdSummaryReporsitory.h"
#include "repositories/pd/PdTaskInfoRepository.h"
#include "repositories/pd/PdTaskRepository.h"
#include "support/TestMain.h"

#include <QTest>

using namespace DataAccess;
using namespace PD::Entities;
using TestSupport::PdDatabase;
using TestSupport::Values;

namespace {

void fill(PdTask& task, int i)
{
    task.SetCableId(Values::id(i));
    task.SetStationId(Values::id(i));
    task.SetCreationDate(Values::dateTime(i));
    task.SetTester(Values::text(i));
    task.SetPath(Values::text(Values::count - 1 - i));
    task.SetComment(Values::text(i));
    task.SetDevices(i == 1 ? QStringList() : QStringList{QStringLiteral("; \",[]"), QString(), QStringLiteral("Öl")});
    if (i == 2)
        task.SetDevicesFromText(QStringLiteral("a text of another version"));
    task.SetKvtrRecommentation(Values::text(Values::count - 1 - i));
}

void fill(PdReport& report, int i)
{
    report.SetTaskId(Values::id(i));
    report.SetCreationTimestamp(Values::dateTime(i));
    report.SetFlags(Values::integer(i));
    report.SetRecommentation(Values::text(i));
    QHash<QString, QString> filter;
    for (int k = 0; k < i; ++k)
        filter.insert(k == 4 ? QStringLiteral("';--") : QString::number(k), Values::text(k));
    report.SetFilter(filter);
}

void fill(PdFile& file, int i)
{
    file.SetName(Values::text(i));
    file.SetFile(Values::bytes(i));
    file.SetHash(Values::bytes(Values::count - 1 - i));
    file.SetReportId(Values::id(i));
}

void fill(PdIecOverview& overview, int i)
{
    overview.setReportId(Values::id(i));
    overview.setPhaseIndex(Values::integer(i));
    overview.setGroundNoise(Values::number(i));
    overview.setSensitivityLevel(Values::number(Values::count - 1 - i));
    overview.setFrequency(Values::number(i));
    overview.setPdivVoltage(Values::number(Values::count - 1 - i));
    overview.setPdevVoltage(Values::number(i));
    overview.setPdivMaxCharge(Values::number(Values::count - 1 - i));
    QMap<double, double> charges;
    for (int k = 0; k < i; ++k)
        charges.insert(Values::number(k), Values::number(k + 1));
    overview.setMaxCharges(charges);
    overview.setMedCharges(Values::text(i));
}

void fill(PdMappingEvent& event, int i)
{
    event.setReportId(Values::id(i));
    event.setLoad(Values::number(i));
    event.setPhaseIndex(Values::integer(i));
    event.setClassification(Values::integer(Values::count - 1 - i));
    event.setPolarity(Values::flag(i));
    event.setVoltage(Values::number(Values::count - 1 - i));
    event.setPosition(-Values::number(i));
    event.setMode(Values::integer(i));
}

void fill(PdLbDiagram& diagram, int i)
{
    diagram.setReportId(Values::id(i));
    diagram.setPhase1Visible(i == 0);
    diagram.setPhase2Visible(i == 1);
    diagram.setPhase3Visible(i == 2);
    diagram.setFilterClass(i == 3 ? std::numeric_limits<unsigned int>::max() : Values::index(i));
    diagram.setFilterVoltageMin(Values::number(i));
    diagram.setFilterVoltageMax(Values::number(Values::count - 1 - i));
}

void fill(PdSummary& summary, int i)
{
    using Setter = void (PdSummary::*)(bool);
    constexpr Setter setters[] = {&PdSummary::setPdivState,   &PdSummary::setPdevState,  &PdSummary::setNoiseState,
                                  &PdSummary::setDataState,   &PdSummary::setVwdState,   &PdSummary::setDacPosState,
                                  &PdSummary::setDacNegState, &PdSummary::setVlfCrState, &PdSummary::setVlfSinState};
    for (std::size_t k = 0; k < std::size(setters); ++k)
        (summary.*setters[k])(k % Values::count == static_cast<std::size_t>(i) && (k < Values::count || i != 0));
    summary.setReportId(Values::id(i));
    summary.setMaxAppliedVoltage(Values::number(i));
}

void fill(PdTaskInfo& info, int i)
{
    info.setReportId(Values::id(i));
    info.setSoftwareVersion(Values::text(i));
    info.setSystemType(Values::text(Values::count - 1 - i));
    info.setSerialNumber(Values::text(i));
    info.setCalibrationDate(Values::dateTime(i));
}

template <typename Repository>
void check(bool failures)
{
    TestSupport::checkKind<Repository, PdDatabase>(failures, [](auto& entity, int i) { fill(entity, i); });
}

constexpr std::pair<const char*, void (*)(bool)> s_kinds[] = {
    {"task", &check<Repositories::PdTaskRepository>},
    {"report", &check<Repositories::PdReportRepository>},
    {"file", &check<Repositories::PdFileRepository>},
    {"overview", &check<Repositories::PdIecOverviewRepository>},
    {"mapping event", &check<Repositories::PdMappingEventRepository>},
    {"diagram", &check<Repositories::PdLbDiagramRepository>},
    {"summary", &check<Repositories::PdSummaryReporsitory>},
    {"task info", &check<Repositories::PdTaskInfoRepository>},
};

} // namespace

/// Every property of every kind of entity comes back as it was stored, and what is not stored is told.
class PdRoundTripTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyProperty_data() { TestSupport::addKinds(s_kinds); }
    void everyProperty()
    {
        QFETCH(int, kind);
        s_kinds[kind].second(false);
    }

    void failures_data() { TestSupport::addKinds(s_kinds); }
    void failures()
    {
        QFETCH(int, kind);
        s_kinds[kind].second(true);
    }
};

DATAACCESS_TEST(PdRoundTripTest)

#include "PdRoundTripTest.moc"
