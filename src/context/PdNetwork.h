#pragma once

#include "context/CableNetwork.h"
#include "entities/pd/PdFile.h"
#include "entities/pd/PdIecOverview.h"
#include "entities/pd/PdLbDiagram.h"
#include "entities/pd/PdMappingEvent.h"
#include "entities/pd/PdReport.h"
#include "entities/pd/PdSummary.h"
#include "entities/pd/PdTask.h"
#include "entities/pd/PdTaskInfo.h"

#include <tuple>

namespace DataAccess::Context {

/// One X of each kind of the partial-discharge results.
template <template <typename> class X>
using ForEachPdKind =
    std::tuple<X<PD::Entities::PdIecOverview>, X<PD::Entities::PdMappingEvent>, X<PD::Entities::PdSummary>,
               X<PD::Entities::PdFile>, X<PD::Entities::PdReport>, X<PD::Entities::PdTask>, X<PD::Entities::PdTaskInfo>,
               X<Cables::Entities::Rating>, X<PD::Entities::PdLbDiagram>>;

template <>
inline constexpr const char* kindName<PD::Entities::PdIecOverview> = "PdIecOverview";
template <>
inline constexpr const char* kindName<PD::Entities::PdMappingEvent> = "PdMappingEvent";
template <>
inline constexpr const char* kindName<PD::Entities::PdSummary> = "PdSummary";
template <>
inline constexpr const char* kindName<PD::Entities::PdFile> = "PdFile";
template <>
inline constexpr const char* kindName<PD::Entities::PdReport> = "PdReport";
template <>
inline constexpr const char* kindName<PD::Entities::PdTask> = "PdTask";
template <>
inline constexpr const char* kindName<PD::Entities::PdTaskInfo> = "PdTaskInfo";
template <>
inline constexpr const char* kindName<PD::Entities::PdLbDiagram> = "PdLbDiagram";

/// Partial-discharge tests with their results.
using PdNetwork = EntityHashes<ForEachPdKind<EntitiesById>>;

} // namespace DataAccess::Context
