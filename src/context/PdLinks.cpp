#include "context/PdLinks.h"

#include "context/Linking.h"

#include <tuple>

namespace DataAccess::Context {

using namespace PD::Entities;
using Cables::Entities::Cable;
using Cables::Entities::Rating;
using Cables::Entities::Station;

namespace {

/// Orders entities by what @p rankOf gives for each.
template <typename RankOf>
auto by(RankOf rankOf)
{
    return [rankOf](const auto& left, const auto& right) { return rankOf(*left) < rankOf(*right); };
}

template <typename T>
auto partsByReport(const PdNetwork& network)
{
    return childrenByParent(network.of<T>(), [](const T& part) { return part.reportId(); });
}

/// Of the parts of a report the one that was written last.
template <typename T>
auto partOfReport(const PdNetwork& network)
{
    return latestByParent(
        network.of<T>(), [](const T& part) { return part.reportId(); }, [](const T& part) { return part.Timestamp(); });
}

void linkReports(const PdNetwork& network)
{
    auto files = childrenByParent(network.of<PdFile>(), [](const PdFile& file) { return file.ReportId(); });
    auto overviews = partsByReport<PdIecOverview>(network);
    auto events = partsByReport<PdMappingEvent>(network);
    const auto diagrams = partOfReport<PdLbDiagram>(network);
    const auto summaries = partOfReport<PdSummary>(network);
    const auto infos = partOfReport<PdTaskInfo>(network);
    const auto byName = by([](const PdFile& file) { return std::make_tuple(file.Name(), file.Id()); });
    const auto byPhase =
        by([](const PdIecOverview& overview) { return std::make_tuple(overview.phaseIndex(), overview.Id()); });
    const auto byPlace = by(
        [](const PdMappingEvent& event) { return std::make_tuple(event.phaseIndex(), event.position(), event.Id()); });
    for (const auto& report : network.of<PdReport>()) {
        const QUuid id = report->Id();
        report->SetFiles(orderedChildren<Interfaces::IPdFile>(files[id], *report, byName));
        report->setIecOverview(orderedChildren<Interfaces::IPdIecOverview>(overviews[id], *report, byPhase));
        report->setMappingEvents(orderedChildren<Interfaces::IPdMappingEvent>(events[id], *report, byPlace));
        report->SetLbDiagram(diagrams.value(id));
        report->setSummary(summaries.value(id));
        report->setTaskInfo(infos.value(id));
    }
    for (const auto& file : network.of<PdFile>()) {
        if (const auto report = network.find<PdReport>(file->ReportId()))
            file->SetReport(report);
    }
}

} // namespace

void linkResults(const PdNetwork& network)
{
    linkReports(network);
    auto reports = childrenByParent(network.of<PdReport>(), [](const PdReport& report) { return report.TaskId(); });
    const auto ratings = latestByParent(
        network.of<Rating>(), [](const Rating& rating) { return rating.taskID(); },
        [](const Rating& rating) { return rating.measureTime(); });
    const auto byCreation = by([](const PdReport& report) {
        return std::make_tuple(report.CreationTimestamp().isValid(), report.CreationTimestamp(), report.Id());
    });
    for (const auto& task : network.of<PdTask>()) {
        task->SetReports(orderedChildren<Interfaces::IPdReport>(reports[task->Id()], *task, byCreation));
        task->SetRating(ratings.value(task->Id()));
    }
    for (const auto& report : network.of<PdReport>()) {
        if (const auto task = network.find<PdTask>(report->TaskId()))
            report->SetTask(task);
    }
}

void linkTasks(const EntitiesById<PdTask>& tasks, const EntitiesById<Cable>& cables,
               const EntitiesById<Station>& stations)
{
    for (const auto& task : tasks) {
        const auto state = task->EntityState();
        const QUuid cableId = task->CableId();
        const QUuid stationId = task->StationId();
        // The object that the context does not have is let go of, though not its id.
        task->SetCable(cables.value(cableId));
        task->SetCableId(cableId);
        task->SetStation(stations.value(stationId));
        task->SetStationId(stationId);
        task->SetEntityState(state);
    }
}

} // namespace DataAccess::Context
