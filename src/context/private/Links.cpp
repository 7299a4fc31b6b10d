#include "context/private/Networks.h"

#include <QDateTime>

#include <algorithm>
#include <vector>

// Links entities that know each other by id, and finds those that an entity holds.
namespace DataAccess::Context {

using namespace Cables::Entities;
using namespace PD::Entities;

namespace {

/// The entities by the id of the one that they belong to. Those that belong to none are left out.
template <typename T, typename ParentId>
QHash<QUuid, std::vector<std::shared_ptr<T>>> childrenByParent(const QHash<QUuid, std::shared_ptr<T>>& entities,
                                                               const ParentId& parentId)
{
    QHash<QUuid, std::vector<std::shared_ptr<T>>> children;
    for (const std::shared_ptr<T>& entity : entities) {
        const QUuid parent = parentId(*entity);
        if (!parent.isNull())
            children[parent].push_back(entity);
    }
    return children;
}

/// Whether @p parent lists @p child: not when it is marked deleted, nor a snapshot among live ones.
bool isListed(const QOR::Entities::Entity& child, const QOR::Entities::Entity& parent)
{
    return QOR::Entities::isListed(child.EntityState(), parent.EntityState());
}

/// Orders entities by what @p rankOf gives for each.
template <typename RankOf>
auto inOrderOf(RankOf rankOf)
{
    return [rankOf](const auto& left, const auto& right) { return rankOf(*left) < rankOf(*right); };
}

/// Those of @p children that @p parent lists, in the order of @p isBefore.
template <typename Interface, typename T, typename Less>
std::vector<std::shared_ptr<Interface>> orderedChildren(std::vector<std::shared_ptr<T>>& children,
                                                        const QOR::Entities::Entity& parent, const Less& isBefore)
{
    std::sort(children.begin(), children.end(), isBefore);
    std::vector<std::shared_ptr<Interface>> listed;
    for (const std::shared_ptr<T>& child : children) {
        if (isListed(*child, parent))
            listed.push_back(child);
    }
    return listed;
}

/// For each parent, the one of its live entities whose @p time is the latest.
template <typename T, typename ParentId, typename Time>
QHash<QUuid, std::shared_ptr<T>> latestByParent(const QHash<QUuid, std::shared_ptr<T>>& entities,
                                                const ParentId& parentId, const Time& time)
{
    // An unknown time comes before all others; the id decides between equal times, so that each run chooses alike.
    const auto rank = [&time](const T& entity) {
        return std::make_tuple(time(entity).isValid(), time(entity), entity.Id());
    };
    QHash<QUuid, std::shared_ptr<T>> latest;
    for (const std::shared_ptr<T>& entity : entities) {
        const QUuid parent = parentId(*entity);
        if (parent.isNull() || !isLive(*entity))
            continue;
        std::shared_ptr<T>& soFar = latest[parent];
        if (!soFar || rank(*soFar) < rank(*entity))
            soFar = entity;
    }
    return latest;
}

/// Phases and segments in the order of their index.
const auto s_byIndex = inOrderOf([](const auto& child) { return std::make_tuple(child.Index(), child.Id()); });

void linkTypes(const CableNetwork& network)
{
    for (const auto& detail : network.of<SegmentDetail>()) {
        if (const auto insulation = network.find<Insulation>(detail->InsulationId()))
            detail->SetInsulation(insulation);
        if (const auto type = network.find<SegmentType>(detail->TypeId()))
            detail->SetType(type);
    }
    for (const auto& station : network.of<Station>()) {
        if (const auto point = network.find<Point>(station->PointId()))
            station->SetPoint(point);
    }
}

void linkSegments(const CableNetwork& network)
{
    auto segments = childrenByParent(network.of<Segment>(), [](const Segment& segment) { return segment.PhaseId(); });
    for (const auto& phase : network.of<Phase>()) {
        phase->LinkSegments(
            orderedChildren<Cables::Entities::Interfaces::ISegment>(segments[phase->Id()], *phase, s_byIndex));
    }
    for (const auto& segment : network.of<Segment>()) {
        if (const auto detail = network.find<SegmentDetail>(segment->DetailId()))
            segment->SetDetail(detail);
        // Segments that their phase does not list know it too.
        if (const auto phase = network.find<Phase>(segment->PhaseId()))
            segment->LinkPhase(phase);
    }
}

void linkRoutes(const CableNetwork& network)
{
    for (const auto& route : network.of<Route>()) {
        std::vector<std::shared_ptr<Cables::Entities::Interfaces::IPoint>> points;
        for (const QUuid& id : route->PointIds())
            points.push_back(network.find<Point>(id));
        route->SetPoints(points);
    }
    for (const auto& cable : network.of<Cable>()) {
        if (const auto route = network.find<Route>(cable->RouteId()))
            cable->LinkRoute(route);
    }
    for (const auto& route : network.of<Route>()) {
        if (const auto cable = network.find<Cable>(route->CableId()))
            route->LinkCable(cable);
    }
}

void linkEnds(const CableNetwork& network, Cable& cable)
{
    if (const auto station = network.find<Station>(cable.StationAId()))
        cable.SetStationA(station);
    if (const auto station = network.find<Station>(cable.StationBId()))
        cable.SetStationB(station);
    if (const auto termination = network.find<Termination>(cable.TerminationAId()))
        cable.SetTerminationA(termination);
    if (const auto termination = network.find<Termination>(cable.TerminationBId()))
        cable.SetTerminationB(termination);
    if (const auto switchgear = network.find<Switchgear>(cable.SwitchgearAId()))
        cable.SetSwitchgearA(switchgear);
    if (const auto switchgear = network.find<Switchgear>(cable.SwitchgearBId()))
        cable.SetSwitchgearB(switchgear);
    if (const auto owner = network.find<Owner>(cable.OwnerId()))
        cable.SetOwner(owner);
}

void linkCables(const CableNetwork& network)
{
    auto phases = childrenByParent(network.of<Phase>(), [](const Phase& phase) { return phase.CableId(); });
    const auto ratings = latestByParent(
        network.of<Rating>(), [](const Rating& rating) { return rating.cableID(); },
        [](const Rating& rating) { return rating.measureTime(); });
    for (const auto& cable : network.of<Cable>()) {
        cable->LinkPhases(
            orderedChildren<Cables::Entities::Interfaces::IPhase>(phases[cable->Id()], *cable, s_byIndex));
        cable->LinkRating(ratings.value(cable->Id()));
        linkEnds(network, *cable);
    }
    for (const auto& phase : network.of<Phase>()) {
        if (const auto cable = network.find<Cable>(phase->CableId()))
            phase->LinkCable(cable);
    }
}

template <typename T>
auto partsByReport(const PdNetwork& network)
{
    return childrenByParent(network.of<T>(), [](const T& part) { return part.reportId(); });
}

/// For each report, the part that was written last.
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
    const auto byName = inOrderOf([](const PdFile& file) { return std::make_tuple(file.Name(), file.Id()); });
    const auto byPhase =
        inOrderOf([](const PdIecOverview& overview) { return std::make_tuple(overview.phaseIndex(), overview.Id()); });
    const auto byPlace = inOrderOf(
        [](const PdMappingEvent& event) { return std::make_tuple(event.phaseIndex(), event.position(), event.Id()); });
    for (const auto& report : network.of<PdReport>()) {
        const QUuid id = report->Id();
        report->LinkFiles(orderedChildren<PD::Entities::Interfaces::IPdFile>(files[id], *report, byName));
        report->LinkIecOverview(
            orderedChildren<PD::Entities::Interfaces::IPdIecOverview>(overviews[id], *report, byPhase));
        report->LinkMappingEvents(
            orderedChildren<PD::Entities::Interfaces::IPdMappingEvent>(events[id], *report, byPlace));
        report->LinkLbDiagram(diagrams.value(id));
        report->LinkSummary(summaries.value(id));
        report->LinkTaskInfo(infos.value(id));
    }
    for (const auto& file : network.of<PdFile>()) {
        if (const auto report = network.find<PdReport>(file->ReportId()))
            file->LinkReport(report);
    }
}

/// Tells a visitor of the entities behind their interfaces.
class Teller
{
public:
    explicit Teller(const BondVisitor& visit)
        : m_visit(visit)
    {}

    template <typename... Interface>
    void owned(const std::shared_ptr<Interface>&... parts) const
    {
        (tell(parts, Bond::Owned), ...);
    }

    template <typename Interface>
    void owned(const std::vector<std::shared_ptr<Interface>>& parts) const
    {
        for (const std::shared_ptr<Interface>& part : parts)
            tell(part, Bond::Owned);
    }

    template <typename... Interface>
    void referred(const std::shared_ptr<Interface>&... others) const
    {
        (tell(others, Bond::Referred), ...);
    }

private:
    template <typename Interface>
    void tell(const std::shared_ptr<Interface>& object, Bond bond) const
    {
        if (const auto entity = std::dynamic_pointer_cast<QOR::Entities::Entity>(object))
            m_visit(entity, bond);
    }

    const BondVisitor& m_visit;
};

} // namespace

void linkNetwork(const CableNetwork& network)
{
    linkTypes(network);
    linkSegments(network);
    linkRoutes(network);
    linkCables(network);
}

void linkResults(const PdNetwork& network)
{
    linkReports(network);
    auto reports = childrenByParent(network.of<PdReport>(), [](const PdReport& report) { return report.TaskId(); });
    const auto ratings = latestByParent(
        network.of<Rating>(), [](const Rating& rating) { return rating.taskID(); },
        [](const Rating& rating) { return rating.measureTime(); });
    const auto byCreation = inOrderOf([](const PdReport& report) {
        return std::make_tuple(report.CreationTimestamp().isValid(), report.CreationTimestamp(), report.Id());
    });
    for (const auto& task : network.of<PdTask>()) {
        task->LinkReports(orderedChildren<PD::Entities::Interfaces::IPdReport>(reports[task->Id()], *task, byCreation));
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
        // A link to an object without an id would be lost: it cannot be found.
        if (!task->CableId().isNull())
            task->LinkCable(cables.value(task->CableId()));
        if (!task->StationId().isNull())
            task->LinkStation(stations.value(task->StationId()));
    }
}

void visitBonds(const Cable& cable, const BondVisitor& visit)
{
    const Teller teller(visit);
    teller.referred(cable.StationA(), cable.StationB(), cable.TerminationA(), cable.TerminationB(), cable.SwitchGearA(),
                    cable.SwitchGearB(), cable.Owner());
    teller.owned(cable.Route(), cable.Rating());
    teller.owned(cable.Phases());
}

void visitBonds(const Phase& phase, const BondVisitor& visit)
{
    const Teller teller(visit);
    teller.referred(phase.Cable());
    teller.owned(phase.Segments());
}

void visitBonds(const Segment& segment, const BondVisitor& visit)
{
    const Teller teller(visit);
    teller.referred(segment.Phase(), segment.Detail());
}

void visitBonds(const SegmentDetail& detail, const BondVisitor& visit)
{
    const Teller teller(visit);
    teller.referred(detail.Insulation(), detail.Type());
}

void visitBonds(const Station& station, const BondVisitor& visit)
{
    const Teller teller(visit);
    teller.owned(station.Point());
}

void visitBonds(const Route& route, const BondVisitor& visit)
{
    const Teller teller(visit);
    teller.referred(route.Cable());
    teller.owned(route.Points());
}

void visitBonds(const PdTask& task, const BondVisitor& visit)
{
    const Teller teller(visit);
    teller.owned(task.Rating());
    teller.owned(task.Reports());
}

void visitBonds(const PdReport& report, const BondVisitor& visit)
{
    const Teller teller(visit);
    teller.referred(report.Task());
    teller.owned(report.LbDiagram(), report.Summary(), report.TaskInfo());
    teller.owned(report.Files());
    teller.owned(report.IecOverview());
    teller.owned(report.MappingEvents());
}

void visitBonds(const PdFile& file, const BondVisitor& visit)
{
    const Teller teller(visit);
    teller.referred(file.Report());
}

} // namespace DataAccess::Context
