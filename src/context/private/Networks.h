#pragma once

#include "context/private/EntityLedger.h"
#include "manager/private/Kinds.h"

#include <QHash>
#include <QUuid>

#include <cmath>
#include <functional>
#include <memory>
#include <tuple>
#include <type_traits>

/// The entities of a context, each kind by itself, and what is done with all of them.
namespace DataAccess::Context {

/// The entities of one kind, by id.
template <typename T>
using EntitiesById = QHash<QUuid, std::shared_ptr<T>>;

/// The type of the entities in an EntitiesById.
template <typename Entities>
using EntityOf = typename std::decay_t<Entities>::mapped_type::element_type;

/// The entities of the kinds @p T.
template <typename... T>
class EntityHashes
{
public:
    template <typename Kind>
    EntitiesById<Kind>& of()
    {
        return std::get<EntitiesById<Kind>>(m_kinds);
    }
    template <typename Kind>
    const EntitiesById<Kind>& of() const
    {
        return std::get<EntitiesById<Kind>>(m_kinds);
    }
    /// The entity of @p id; null when it is not here.
    template <typename Kind>
    std::shared_ptr<Kind> find(const QUuid& id) const
    {
        return of<Kind>().value(id);
    }

    /// Calls @p visitor with the entities of each kind.
    template <typename Visitor>
    void visit(const Visitor& visitor)
    {
        std::apply([&visitor](auto&... entities) { (visitor(entities), ...); }, m_kinds);
    }

    template <typename Visitor>
    void visit(const Visitor& visitor) const
    {
        std::apply([&visitor](const auto&... entities) { (visitor(entities), ...); }, m_kinds);
    }

private:
    std::tuple<EntitiesById<T>...> m_kinds;
};

/// Only declared: its result is the type that holds all entities of a list of kinds.
template <typename... Kind>
EntityHashes<typename Kind::Entity...> hashesOf(const std::tuple<Kind...>& kinds);

/// The entities of a cable network.
using CableNetwork = decltype(hashesOf(Manager::editorKinds));
/// Partial-discharge tests with their results.
using PdNetwork = decltype(hashesOf(Manager::pdKinds));

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

/// Whether @p id is that of a row that every cable network has, with the same id everywhere.
bool isDefaultType(const QUuid& id);

// The links between entities. Setting them changes no id and no state.

/**
 * Points every reference of the network at the object that it names, as far as that is there; other ids stay as they
 * are. Phases and segments are listed in the order of their index, points in that of the route; without those marked
 * deleted and, unless the owner is one too, without snapshots. A cable's rating is the one measured last.
 */
void linkNetwork(const CableNetwork& network);

/**
 * Gives tasks their reports, in the order of their creation, and the rating measured last; reports their files, in the
 * order of their names, and their results, in the order of phase and position. Of several results where a report has
 * one, the one written last counts. Nothing that is marked deleted is listed.
 */
void linkResults(const PdNetwork& network);

/// Points the tasks at their cables and stations, and at none where these are not there.
void linkTasks(const EntitiesById<PD::Entities::PdTask>& tasks, const EntitiesById<Cables::Entities::Cable>& cables,
               const EntitiesById<Cables::Entities::Station>& stations);

// Call @p visit with each entity that @p entity is linked to and that is stored in the same context. The parent that
// owns it is referred to; of a task the cable and the station belong to another context.
void visitBonds(const Cables::Entities::Cable& cable, const BondVisitor& visit);
void visitBonds(const Cables::Entities::Phase& phase, const BondVisitor& visit);
void visitBonds(const Cables::Entities::Route& route, const BondVisitor& visit);
void visitBonds(const Cables::Entities::Segment& segment, const BondVisitor& visit);
void visitBonds(const Cables::Entities::SegmentDetail& detail, const BondVisitor& visit);
void visitBonds(const Cables::Entities::Station& station, const BondVisitor& visit);
void visitBonds(const PD::Entities::PdFile& file, const BondVisitor& visit);
void visitBonds(const PD::Entities::PdReport& report, const BondVisitor& visit);
void visitBonds(const PD::Entities::PdTask& task, const BondVisitor& visit);
/// The other kinds hold no entities.
template <typename T>
void visitBonds(const T& /*entity*/, const BondVisitor& /*visit*/)
{}

// Repairs of a network that was just loaded and is not linked yet. What they change is logged with its ids; running
// them again changes nothing more. docs/contexts.md has the rules.

/// Marks all but one of the segments deleted that are stored twice: same phase, index and content.
void removeDuplicateSegments(const CableNetwork& network);

/// Makes joints, their details and their neighbours agree where that is possible without a loss.
void repairJoints(const CableNetwork& network);

} // namespace DataAccess::Context
