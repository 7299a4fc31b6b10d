#pragma once

#include "migration/TableDefinition.h"

/// The layouts of the cable network's tables. The number is the schema version that a layout came with.
namespace DataAccess::Manager::EditorTables {

TableDefinition station01();
TableDefinition station02();
TableDefinition segment01();
TableDefinition segment02();
TableDefinition segment03();
TableDefinition segmentDetail02();
TableDefinition cable01();
TableDefinition cable02();
TableDefinition cable07();
TableDefinition evaluation05();
TableDefinition rating06();
TableDefinition cablebookMeasures07();
/// All tables of the cable network as version 1 has them.
QVector<TableDefinition> all01();
/// The tables of a cable network from before there were versions, among them two that have other names now.
QStringList unversioned();
/// All tables that any version has had, in lower case.
QStringList names();

} // namespace DataAccess::Manager::EditorTables
