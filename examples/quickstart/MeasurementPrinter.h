#pragma once

#include <QTextStream>

namespace DataAccess::Manager {
class PdRepositoryManager;
}

/// Prints the partial-discharge tests of a database as a tree, with units.
void printMeasurements(DataAccess::Manager::PdRepositoryManager& manager, QTextStream& out);
