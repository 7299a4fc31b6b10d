#include "migration/private/PdChanges.h"

#include "database/LoggingCategories.h"
#include "migration/SchemaChange.h"

namespace DataAccess::Manager {

namespace {

void createUnlessPresent(SchemaChange& schema, const TableDefinition& table, const char* existsText)
{
    if (schema.tables().contains(table.name))
        qCWarning(lcMigrationPd) << "Table:" << table.name << existsText;
    else
        schema.create(table);
}

} // namespace

void PdChanges::createTables(SchemaChange& schema, const char* existsText)
{
    for (const TableDefinition& table : schema.step().layouts)
        createUnlessPresent(schema, table, existsText);
}

void PdChanges::rebuild(SchemaChange& schema, const Copy& copy)
{
    const TableDefinition& layout = schema.after(copy.table);
    TableDefinition work = schema.before(copy.table);
    work.name += QStringLiteral("_old");
    const QStringList tables = schema.tables();
    const bool waiting = tables.contains(work.name);
    const bool missing = !tables.contains(layout.name);
    if (waiting && !missing) {
        const QString doubles = QStringLiteral("DELETE FROM %1 WHERE id IN (SELECT id FROM %2)");
        schema.tellDiscarded(work.name, schema.execute(doubles.arg(work.name, layout.name), {}));
    }
    if (waiting && missing) {
        schema.create(layout);
    } else if (schema.hasColumns(layout)) {
        qCWarning(lcMigrationPd) << "Table:" << layout.name << "already exists!";
        if (!waiting)
            return;
    } else {
        createUnlessPresent(schema, work, "already exists!");
        if (!schema.rows(copy.select).isEmpty())
            schema.execute(copy.save);
        schema.replace(layout);
    }
    if (!schema.rows(QStringLiteral("SELECT id FROM ") + work.name).isEmpty())
        schema.execute(copy.restore);
    schema.dropCopied(work.name);
}

} // namespace DataAccess::Manager
