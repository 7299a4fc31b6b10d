#pragma once

#include "context/private/Networks.h"

namespace DataAccess::Context {

/// A property of @p Entity that refers to a @p TargetEntity by its id.
template <typename Entity, typename TargetEntity, typename Interface>
struct ReferenceProperty
{
    using Target = TargetEntity;

    const QUuid& (Entity::*id)() const;
    void (Entity::*setId)(const QUuid&);
    std::shared_ptr<Interface> (Entity::*object)() const;
};

template <typename Target, typename Entity, typename Interface>
constexpr auto refersTo(const QUuid& (Entity::*id)() const, void (Entity::*setId)(const QUuid&),
                        std::shared_ptr<Interface> (Entity::*object)() const)
{
    return ReferenceProperty<Entity, Target, Interface>{id, setId, object};
}

/// What the entities of a kind refer to and does not belong to them: cables, phases and lists of points are not here.
template <typename T>
inline constexpr auto referencesOf = std::make_tuple();

template <>
inline constexpr auto referencesOf<Cables::Entities::SegmentDetail> = [] {
    using namespace Cables::Entities;
    using E = SegmentDetail;
    return std::make_tuple(refersTo<Insulation>(&E::InsulationId, &E::SetInsulationId, &E::Insulation),
                           refersTo<SegmentType>(&E::TypeId, &E::SetTypeId, &E::Type));
}();

template <>
inline constexpr auto referencesOf<Cables::Entities::Station> = [] {
    using E = Cables::Entities::Station;
    return std::make_tuple(refersTo<Cables::Entities::Point>(&E::PointId, &E::SetPointId, &E::Point));
}();

template <>
inline constexpr auto referencesOf<Cables::Entities::Segment> = [] {
    using E = Cables::Entities::Segment;
    return std::make_tuple(refersTo<Cables::Entities::SegmentDetail>(&E::DetailId, &E::SetDetailId, &E::Detail));
}();

template <>
inline constexpr auto referencesOf<Cables::Entities::Cable> = [] {
    using namespace Cables::Entities;
    using E = Cable;
    return std::make_tuple(refersTo<Station>(&E::StationAId, &E::SetStationAId, &E::StationA),
                           refersTo<Station>(&E::StationBId, &E::SetStationBId, &E::StationB),
                           refersTo<Termination>(&E::TerminationAId, &E::SetTerminationAId, &E::TerminationA),
                           refersTo<Termination>(&E::TerminationBId, &E::SetTerminationBId, &E::TerminationB),
                           refersTo<Switchgear>(&E::SwitchgearAId, &E::SetSwitchgearAId, &E::SwitchGearA),
                           refersTo<Switchgear>(&E::SwitchgearBId, &E::SetSwitchgearBId, &E::SwitchGearB),
                           refersTo<Route>(&E::RouteId, &E::SetRouteId, &E::Route),
                           refersTo<Owner>(&E::OwnerId, &E::SetOwnerId, &E::Owner));
}();

/// Calls @p visit with each ReferenceProperty of the kind @p T.
template <typename T, typename Visitor>
void forEachReference(const Visitor& visit)
{
    std::apply([&visit](const auto&... reference) { (visit(reference), ...); }, referencesOf<T>);
}

} // namespace DataAccess::Context
