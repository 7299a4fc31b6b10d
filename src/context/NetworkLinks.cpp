#include "context/NetworkLinks.h"

#include "context/Linking.h"

namespace DataAccess::Context {

using namespace Cables::Entities;

namespace {

template <typename Child>
bool isBefore(const std::shared_ptr<Child>& left, const std::shared_ptr<Child>& right)
{
    return std::make_pair(left->Index(), left->Id()) < std::make_pair(right->Index(), right->Id());
}

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
        phase->LinkSegments(orderedChildren<Interfaces::ISegment>(segments[phase->Id()], *phase, isBefore<Segment>));
    }
    for (const auto& segment : network.of<Segment>()) {
        if (const auto detail = network.find<SegmentDetail>(segment->DetailId()))
            segment->SetDetail(detail);
        // Also those that their phase does not list.
        if (const auto phase = network.find<Phase>(segment->PhaseId()))
            segment->LinkPhase(phase);
    }
}

void linkRoutes(const CableNetwork& network)
{
    for (const auto& route : network.of<Route>()) {
        std::vector<std::shared_ptr<Interfaces::IPoint>> points;
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
        cable->LinkPhases(orderedChildren<Interfaces::IPhase>(phases[cable->Id()], *cable, isBefore<Phase>));
        cable->LinkRating(ratings.value(cable->Id()));
        linkEnds(network, *cable);
    }
    for (const auto& phase : network.of<Phase>()) {
        if (const auto cable = network.find<Cable>(phase->CableId()))
            phase->LinkCable(cable);
    }
}

} // namespace

void linkNetwork(const CableNetwork& network)
{
    linkTypes(network);
    linkSegments(network);
    linkRoutes(network);
    linkCables(network);
}

} // namespace DataAccess::Context
