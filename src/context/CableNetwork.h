#pragma once

#include "context/EntityHashes.h"
#include "entities/cables/Cable.h"
#include "entities/cables/Insulation.h"
#include "entities/cables/Owner.h"
#include "entities/cables/Phase.h"
#include "entities/cables/Point.h"
#include "entities/cables/Rating.h"
#include "entities/cables/Route.h"
#include "entities/cables/Segment.h"
#include "entities/cables/SegmentDetail.h"
#include "entities/cables/SegmentType.h"
#include "entities/cables/Station.h"
#include "entities/cables/Switchgear.h"
#include "entities/cables/Termination.h"

#include <cmath>
#include <functional>
#include <tuple>

namespace DataAccess::Context {

/// One X of each kind of the cable network. No kind refers to a later one, but for a route and its cable.
template <template <typename> class X>
using ForEachCableKind =
    std::tuple<X<Cables::Entities::Insulation>, X<Cables::Entities::SegmentType>, X<Cables::Entities::SegmentDetail>,
               X<Cables::Entities::Owner>, X<Cables::Entities::Termination>, X<Cables::Entities::Switchgear>,
               X<Cables::Entities::Point>, X<Cables::Entities::Station>, X<Cables::Entities::Route>,
               X<Cables::Entities::Cable>, X<Cables::Entities::Phase>, X<Cables::Entities::Segment>,
               X<Cables::Entities::Rating>>;

template <>
inline constexpr const char* kindName<Cables::Entities::Insulation> = "Insulation";
template <>
inline constexpr const char* kindName<Cables::Entities::SegmentType> = "SegmentType";
template <>
inline constexpr const char* kindName<Cables::Entities::SegmentDetail> = "SegmentDetail";
template <>
inline constexpr const char* kindName<Cables::Entities::Owner> = "Owner";
template <>
inline constexpr const char* kindName<Cables::Entities::Termination> = "Termination";
template <>
inline constexpr const char* kindName<Cables::Entities::Switchgear> = "Switchgear";
template <>
inline constexpr const char* kindName<Cables::Entities::Point> = "Point";
template <>
inline constexpr const char* kindName<Cables::Entities::Station> = "Station";
template <>
inline constexpr const char* kindName<Cables::Entities::Route> = "Route";
template <>
inline constexpr const char* kindName<Cables::Entities::Cable> = "Cable";
template <>
inline constexpr const char* kindName<Cables::Entities::Phase> = "Phase";
template <>
inline constexpr const char* kindName<Cables::Entities::Segment> = "Segment";
template <>
inline constexpr const char* kindName<Cables::Entities::Rating> = "Rating";

/// The entities of a cable network.
using CableNetwork = EntityHashes<ForEachCableKind<EntitiesById>>;

/// Whether @p entity is neither marked deleted nor a snapshot of another one.
template <typename T>
bool isLive(const T& entity)
{
    using namespace QOR::Entities::Enumerations;
    return entity.EntityState() != Deleted && entity.EntityState() != Snapshot;
}

/// Whether two values are the same, or are both unknown.
inline bool isSameNumber(double left, double right)
{
    return (std::isnan(left) && std::isnan(right)) || std::equal_to<double>()(left, right);
}

} // namespace DataAccess::Context
