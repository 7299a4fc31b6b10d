#pragma once

#include <QString>

namespace DataAccess::Manager {

class SchemaChange;
struct TableDefinition;

/// What the steps of the partial-discharge results share.
namespace PdChanges {

/// How the rows of a table are kept aside in a work table.
struct Copy
{
    QString table;
    QString select;  ///< Finds whether the table has rows.
    QString save;    ///< Copies them into the work table of the name table_old.
    QString restore; ///< Copies them back, into the new layout.
};

/// Creates the tables of the step without sequences; one that is there already is left alone, and logged with
/// @p existsText.
void createTables(SchemaChange& schema, const char* existsText = "already exists!");
/**
 * Gives a table a new layout by way of its work table. Rows that wait there since another program was cut short are
 * brought back too, unless the table has rows of the same ids; the work table is gone afterwards.
 */
void rebuild(SchemaChange& schema, const Copy& copy);

} // namespace PdChanges

} // namespace DataAccess::Manager
