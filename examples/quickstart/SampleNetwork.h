#pragma once

#include "context/CableContext.h"

/// The id of the cable that attachSampleNetwork() attaches, and of the station at its beginning.
QUuid sampleCableId();
QUuid sampleStationId();

/// Attaches a small cable network to a context that has no cable. It has the same ids each time: what an earlier run
/// stored before it was cut short is not stored twice.
void attachSampleNetwork(DataAccess::Context::CableContext& context);
