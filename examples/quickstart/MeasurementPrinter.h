#pragma once

#include "context/PdContext.h"

#include <QTextStream>

/// Prints the partial-discharge tests of a database as a tree, with units.
void printMeasurements(const DataAccess::Context::PdContext& context, QTextStream& out);
