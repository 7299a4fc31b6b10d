#pragma once

#include "context/PdContext.h"

/// Attaches a partial-discharge test of a cable, made from a station, with its results, to a context that has no test.
void attachSampleMeasurement(DataAccess::Context::PdContext& context, const QUuid& cable, const QUuid& station);
