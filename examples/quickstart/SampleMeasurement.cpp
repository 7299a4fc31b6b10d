#include "SampleMeasurement.h"

#include <QCryptographicHash>

using namespace PD::Entities;

namespace {

QUuid idOf(const QString& name)
{
    static const QUuid space(QStringLiteral("{0b7d51f4-53a5-5f3a-8d3e-4b3c7b0f5e21}"));
    return QUuid::createUuidV5(space, name);
}

template <typename T>
std::shared_ptr<T> makePart(const QString& name, const QUuid& report)
{
    auto part = std::make_shared<T>();
    part->SetId(idOf(name));
    part->setReportId(report);
    return part;
}

std::vector<std::shared_ptr<PdIecOverview>> makeOverviews(const QUuid& report)
{
    std::vector<std::shared_ptr<PdIecOverview>> overviews;
    for (int phase = 0; phase < 3; ++phase) {
        overviews.push_back(makePart<PdIecOverview>(QStringLiteral("overview %1").arg(phase), report));
        PdIecOverview& overview = *overviews.back();
        overview.setPhaseIndex(phase);
        overview.setGroundNoise(5e-12);
        overview.setFrequency(50);
        overview.setPdivVoltage(14e3 + 500 * phase);
        overview.setPdevVoltage(11e3);
        overview.setPdivMaxCharge(120e-12);
        overview.setMaxCharges(QMap<double, double>{{11.5e3, 90e-12}, {20e3, (250.0 + 50 * phase) * 1e-12}});
    }
    return overviews;
}

std::vector<std::shared_ptr<PdMappingEvent>> makeEvents(const QUuid& report)
{
    std::vector<std::shared_ptr<PdMappingEvent>> events;
    for (int i = 0; i < 12; ++i) {
        events.push_back(makePart<PdMappingEvent>(QStringLiteral("event %1").arg(i), report));
        PdMappingEvent& event = *events.back();
        event.setPhaseIndex(i % 3);
        event.setPosition(418.0 + 0.5 * i);
        event.setVoltage(20e3);
        event.setLoad((180.0 + 10 * i) * 1e-12);
        event.setPolarity(i % 2 == 0);
    }
    return events;
}

std::shared_ptr<PdFile> makeFile(const QUuid& report)
{
    auto file = std::make_shared<PdFile>();
    file->SetId(idOf(QStringLiteral("file")));
    file->SetName(QStringLiteral("phase1.raw"));
    file->SetFile(QByteArray(4096, '\x5a'));
    file->SetHash(QCryptographicHash::hash(file->File(), QCryptographicHash::Sha256));
    file->SetReportId(report);
    return file;
}

} // namespace

void attachSampleMeasurement(DataAccess::Context::PdContext& context, const QUuid& cable, const QUuid& station)
{
    if (!context.Tasks().isEmpty())
        return;
    auto task = std::make_shared<PdTask>();
    task->SetId(idOf(QStringLiteral("task")));
    task->SetCableId(cable);
    task->SetStationId(station);
    task->SetCreationDate(QDateTime(QDate(2021, 6, 14), QTime(9, 0)));
    task->SetTester(QStringLiteral("A. Tester"));
    task->SetDevices({QStringLiteral("coupler 1"), QStringLiteral("coupler 2")});
    auto report = std::make_shared<PdReport>();
    report->SetId(idOf(QStringLiteral("report")));
    report->SetTaskId(task->Id());
    report->SetCreationTimestamp(QDateTime(QDate(2021, 6, 14), QTime(11, 0)));
    report->SetFilter({{QStringLiteral("class"), QStringLiteral("internal")}});
    const auto summary = makePart<PdSummary>(QStringLiteral("summary"), report->Id());
    summary->setPdivState(true);
    summary->setPdevState(true);
    summary->setDataState(true);
    summary->setMaxAppliedVoltage(20e3);

    context.attach(task);
    context.attach(report);
    context.attach(summary);
    context.attach(makeFile(report->Id()));
    for (const auto& overview : makeOverviews(report->Id()))
        context.attach(overview);
    for (const auto& event : makeEvents(report->Id()))
        context.attach(event);
}
