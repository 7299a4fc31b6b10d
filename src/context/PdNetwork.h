#pragma once

#include "context/EntityHashes.h"
#include "entities/cables/Rating.h"
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

/// Partial-discharge tests with their results.
using PdNetwork = EntityHashes<ForEachPdKind<EntitiesById>>;

} // namespace DataAccess::Context
