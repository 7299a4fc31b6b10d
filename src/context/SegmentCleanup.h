#pragma once

#include "context/CableNetwork.h"

/// Repairs of a network that was just loaded and is not linked yet. What they change is logged with its ids; running
/// them again changes nothing more. docs/contexts.md has the rules.
namespace DataAccess::Context {

/// Marks all but one of the segments deleted that are stored twice: same phase, index and content.
void removeDuplicateSegments(const CableNetwork& network);

/// Makes joints, their details and their neighbours agree where that is possible without a loss.
void repairJoints(const CableNetwork& network);

} // namespace DataAccess::Context
