#pragma once

#include "context/CableNetwork.h"
#include "context/PdNetwork.h"

namespace DataAccess::Context {

/**
 * Gives tasks their reports, in the order of their creation, and the rating measured last; reports their files, in the
 * order of their names, and their results, in the order of phase and position. Of several results where a report has
 * one, the one written last counts. Nothing that is marked deleted is listed. Ids and states stay as they are.
 */
void linkResults(const PdNetwork& network);

/// Points the tasks at their cables and stations, and at none where these are not there. Ids and states stay as they
/// are.
void linkTasks(const EntitiesById<PD::Entities::PdTask>& tasks, const EntitiesById<Cables::Entities::Cable>& cables,
               const EntitiesById<Cables::Entities::Station>& stations);

} // namespace DataAccess::Context
