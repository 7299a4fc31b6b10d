#pragma once

#include "manager/EditorRepositoryManager.h"
#include "manager/LbRepositoryManager.h"
#include "manager/PdRepositoryManager.h"
#include "repositories/cables/CableRepository.h"
#include "repositories/cables/PhaseRepository.h"
#include "repositories/cables/PlainRepositories.h"
#include "repositories/cables/PointRepository.h"
#include "repositories/cables/RatingRepository.h"
#include "repositories/cables/SegmentRepository.h"
#include "repositories/cables/StationRepository.h"
#include "repositories/lb/CablebookMeasuresRepository.h"
#include "repositories/pd/PdFileRepository.h"
#include "repositories/pd/PdReportRepository.h"
#include "repositories/pd/PlainRepositories.h"

#include <tuple>
#include <type_traits>

/// The kinds of each family, said once: managers, factories and contexts walk these lists.
namespace DataAccess::Manager {

/// Marks a kind that a manager hands out without a cached view.
struct NoView;

/// When a context loads a kind.
struct Loading
{
    enum Group { Alone, Types, Sections, Routes, Cables };

    int place;           ///< Loads begin in this order, from 1 on; 0 when the kind is loaded on request only.
    Group group = Alone; ///< Without the repository of one kind, nothing of its group is loaded.
    bool isVital = true; ///< Or else the others of the group are loaded without it.
};

/// What is to be known of one kind of entities.
template <typename RepositoryType, typename PlainType, typename ViewType, typename Interface, typename Manager>
struct Kind
{
    using Repository = RepositoryType; ///< Which a factory makes.
    using Plain = PlainType;           ///< As which a manager hands it out.
    using View = ViewType;             ///< Over which it hands out cached entities.
    using Entity = typename Plain::Entities::mapped_type::element_type;

    const char* name; ///< How messages call the kind.
    std::shared_ptr<Plain> (Interface::*repository)() const;
    void (Manager::*setRepository)(const std::shared_ptr<Plain>&);
    Loading loading;
};

/// A kind with a cached view.
template <typename Repository, typename View = void, typename Plain, typename Interface, typename Manager>
constexpr auto cachedKind(const char* name, std::shared_ptr<Plain> (Interface::*repository)() const,
                          void (Manager::*setRepository)(const std::shared_ptr<Plain>&), Loading loading)
{
    using Entity = typename Plain::Entities::mapped_type::element_type;
    using Chosen = std::conditional_t<std::is_void_v<View>, Repositories::RepositoryCache<Entity>, View>;
    return Kind<Repository, Plain, Chosen, Interface, Manager>{name, repository, setRepository, loading};
}

/// A kind without one.
template <typename Repository, typename Interface, typename Manager>
constexpr auto plainKind(const char* name, std::shared_ptr<Repository> (Interface::*repository)() const,
                         void (Manager::*setRepository)(const std::shared_ptr<Repository>&), Loading loading)
{
    return Kind<Repository, Repository, NoView, Interface, Manager>{name, repository, setRepository, loading};
}

/// The kinds of the cable network in the order in which they are saved: none refers to a later one, but for a route and
/// its cable.
inline constexpr auto editorKinds = [] {
    using namespace Repositories;
    using I = Interfaces::IEditorRepositoryManager;
    using M = EditorRepositoryManager;
    using L = Loading;
    return std::make_tuple(
        cachedKind<InsulationRepository>("Insulation", &I::InsulationRepository, &M::SetInsulationRepository,
                                         {4, L::Types}),
        cachedKind<SegmentTypeRepository>("SegmentType", &I::SegmentTypeRepository, &M::SetSegmentTypeRepository,
                                          {3, L::Types}),
        cachedKind<SegmentDetailRepository>("SegmentDetail", &I::SegmentDetailRepository,
                                            &M::SetSegmentDetailRepository, {8, L::Types}),
        cachedKind<OwnerRepository>("Owner", &I::OwnerRepository, &M::SetOwnerRepository, {7, L::Cables}),
        cachedKind<TerminationRepository>("Termination", &I::TerminationRepository, &M::SetTerminationRepository,
                                          {6, L::Cables}),
        cachedKind<SwitchgearRepository>("Switchgear", &I::SwitchgearRepository, &M::SetSwitchgearRepository,
                                         {5, L::Cables}),
        cachedKind<PointRepository, PointRepositoryCached>("Point", &I::PointRepository, &M::SetPointRepository,
                                                           {1, L::Routes}),
        cachedKind<StationRepository>("Station", &I::StationRepository, &M::SetStationRepository, {12, L::Cables}),
        cachedKind<RouteRepository>("Route", &I::RouteRepository, &M::SetRouteRepository, {11, L::Routes}),
        cachedKind<CableRepository>("Cable", &I::CableRepository, &M::SetCableRepository, {9, L::Cables}),
        cachedKind<PhaseRepository, PhaseRepositoryCached>("Phase", &I::PhaseRepository, &M::SetPhaseRepository,
                                                           {13, L::Sections}),
        cachedKind<SegmentRepository, SegmentRepositoryCached>("Segment", &I::SegmentRepository,
                                                               &M::SetSegmentRepository, {2, L::Sections}),
        cachedKind<RatingRepository>("Rating", &I::RatingRepository, &M::SetRatingRepository, {10, L::Cables, false}));
}();

/// The kinds of the partial-discharge results in the order in which they are saved.
inline constexpr auto pdKinds = [] {
    using namespace Repositories;
    using I = Interfaces::IPdRepositoryManager;
    using M = PdRepositoryManager;
    return std::make_tuple(
        plainKind("PdIecOverview", &I::PdIecOverviewRepository, &M::SetPdIecOverviewRepository, {4}),
        plainKind("PdMappingEvent", &I::PdMappingEventRepository, &M::SetPdMappingEventRepository, {5}),
        plainKind("PdSummary", &I::PdSummaryRepository, &M::SetPdSummaryRepository, {6}),
        cachedKind<PdFileRepository>("PdFile", &I::PdFileRepository, &M::SetPdFileRepository, {0}),
        cachedKind<PdReportRepository>("PdReport", &I::PdReportRepository, &M::SetPdReportRepository, {3}),
        cachedKind<PdTaskRepository>("PdTask", &I::PdTaskRepository, &M::SetPdTaskRepository, {1}),
        plainKind("PdTaskInfo", &I::PdTaskInfoRepository, &M::SetPdTaskInfoRepository, {2}),
        plainKind("Rating", &I::RatingRepository, &M::SetRatingRepository, {7}),
        plainKind("PdLbDiagram", &I::PdLbDiagramRepository, &M::SetPdLbDiagramRepository, {8}));
}();

/// The one kind of the cable book; no context loads it.
inline constexpr auto lbKinds = std::make_tuple(cachedKind<Repositories::CablebookMeasuresRepository>(
    "CablebookMeasure", &Interfaces::ILbRepositoryManager::CablebookMeasuresRepository,
    &LbRepositoryManager::SetCablebookMeasuresRepository, {0}));

using EditorKinds = std::decay_t<decltype(editorKinds)>;
using PdKinds = std::decay_t<decltype(pdKinds)>;
using LbKinds = std::decay_t<decltype(lbKinds)>;

/// Calls @p visit with each kind of @p kinds.
template <typename Kinds, typename Visitor>
constexpr void forEachKind(const Kinds& kinds, const Visitor& visit)
{
    std::apply([&visit](const auto&... kind) { (visit(kind), ...); }, kinds);
}

/// How many kinds a load of a context reads.
template <typename Kinds>
constexpr int countLoaded(const Kinds& kinds)
{
    int count = 0;
    forEachKind(kinds, [&count](const auto& kind) { count += kind.loading.place > 0 ? 1 : 0; });
    return count;
}

/// Calls @p visit with the kinds that a load reads, in its order.
template <typename Kinds, typename Visitor>
constexpr void forEachLoaded(const Kinds& kinds, const Visitor& visit)
{
    for (int place = 1; place <= countLoaded(kinds); ++place) {
        forEachKind(kinds, [&](const auto& kind) {
            if (kind.loading.place == place)
                visit(kind);
        });
    }
}

/// Whether each place in the order of a load is that of one kind.
template <typename Kinds>
constexpr bool hasLoadingOrder(const Kinds& kinds)
{
    int found = 0;
    int last = 0;
    bool isOrdered = true;
    forEachLoaded(kinds, [&](const auto& kind) {
        isOrdered = isOrdered && kind.loading.place == last + 1;
        last = kind.loading.place;
        ++found;
    });
    return isOrdered && found == countLoaded(kinds);
}

static_assert(hasLoadingOrder(editorKinds) && hasLoadingOrder(pdKinds), "Two kinds have one place, or none has it");

/// The place of the kind with the entities of type @p T among @p Kind.
template <typename T, typename... Kind>
inline constexpr std::size_t indexOfKind = [] {
    constexpr bool isKind[] = {std::is_same_v<T, typename Kind::Entity>...};
    std::size_t index = 0;
    while (index < sizeof...(Kind) && !isKind[index])
        ++index;
    return index;
}();

/// The kind with the entities of type @p T; does not compile when the list has none.
template <typename T, typename... Kind>
constexpr const auto& kindOf(const std::tuple<Kind...>& kinds)
{
    return std::get<indexOfKind<T, Kind...>>(kinds);
}

} // namespace DataAccess::Manager
