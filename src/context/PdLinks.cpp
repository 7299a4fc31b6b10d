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
        report->LinkFiles(orderedChildren<Interfaces::IPdFile>(files[id], *report, byName));
        report->LinkIecOverview(orderedChildren<Interfaces::IPdIecOverview>(overviews[id], *report, byPhase));
        report->LinkMappingEvents(orderedChildren<Interfaces::IPdMappingEvent>(events[id], *report, byPlace));
        report->LinkLbDiagram(diagrams.value(id));
        report->LinkSummary(summaries.value(id));
        report->LinkTaskInfo(infos.value(id));
    }
    for (const auto& file : network.of<PdFile>()) {
        if (const auto report = network.find<PdReport>(file->ReportId()))
            file->LinkReport(report);
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
        task->LinkReports(orderedChildren<Interfaces::IPdReport>(reports[task->Id()], *task, byCreation));
        task->LinkRating(ratings.value(task->Id()));
    }
    for (const auto& report : network.of<PdReport>()) {
        if (const auto task = network.find<PdTask>(report->TaskId()))
            report->LinkTask(task);
    }
}

void linkTasks(const EntitiesById<PdTask>& tasks, const EntitiesById<Cable>& cables,
               const EntitiesById<Station>& stations)
{
    for (const auto& task : tasks) {
        // An object that has no id yet cannot be found.
        if (!task->CableId().isNull())
            task->LinkCable(cables.value(task->CableId()));
        if (!task->StationId().isNull())
            task->LinkStation(stations.value(task->StationId()));
    }
}

} // namespace DataAccess::Context
