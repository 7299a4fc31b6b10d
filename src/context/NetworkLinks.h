#pragma once

#include "context/CableNetwork.h"

namespace DataAccess::Context {

/**
 * Points every reference of the network at the object that it names, as far as that is there; other ids stay as they
 * are. Phases and segments are listed in the order of their index, points in that of the route; without those marked
 * deleted and, unless the owner is one too, without snapshots. A cable's rating is the one measured last. Ids and
 * states stay as they are.
 */
void linkNetwork(const CableNetwork& network);

} // namespace DataAccess::Context
