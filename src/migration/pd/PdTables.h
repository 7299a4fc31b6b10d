#pragma once

#include "migration/TableDefinition.h"

/// The layouts of the partial-discharge tables. The number is the schema version that a layout came with.
namespace DataAccess::Manager::PdTables {

TableDefinition file01();
TableDefinition task01();
TableDefinition report01();
TableDefinition mapping01();
TableDefinition reportMapping02();
TableDefinition filter02();
TableDefinition iec02();
TableDefinition evaluation03();
TableDefinition mappingEvent04();
TableDefinition iecOverview04();
TableDefinition iecOverview05();
TableDefinition summary04();
TableDefinition summary07();
TableDefinition taskInfo06();
TableDefinition lbDiagram08();
/// The names under which two steps keep rows aside.
QString iecOverviewWork();
QString summaryWork();
/// All tables that any version has had, in lower case.
QStringList names();

} // namespace DataAccess::Manager::PdTables
