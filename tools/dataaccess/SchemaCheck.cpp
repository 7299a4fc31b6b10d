#include "SchemaCheck.h"

#include "database/IDatabase.h"
#include "database/backends/Backend.h"

#include <QHash>
#include <QSqlQuery>

using namespace DataAccess;
using Transfer::SchemaColumn;

namespace {

struct StoredColumn
{
    QString type;
    bool isKey = false;
};

QHash<QString, StoredColumn> storedColumns(Interfaces::IDatabase& db, const QString& table)
{
    QHash<QString, StoredColumn> columns;
    QSqlQuery query = db.Exec(Database::Backend::of(db).columnSearch().arg(table));
    while (query.next())
        columns.insert(query.value(0).toString(), {query.value(1).toString(), query.value(2).toBool()});
    return columns;
}

} // namespace

QVector<SchemaFault> schemaFaults(Interfaces::IDatabase& db, const Transfer::SchemaTable& table)
{
    const QHash<QString, StoredColumn> stored = storedColumns(db, table.name);
    QVector<SchemaFault> faults;
    for (const SchemaColumn& column : table.columns) {
        const auto found = stored.constFind(column.name);
        if (found == stored.constEnd())
            faults.append({"column missing", column.name, QStringLiteral("the column is missing"), true});
        else if (!Database::Backend::of(db).columnTypes(column.kind).contains(found->type))
            faults.append({"column type", column.name, QStringLiteral("the column is %1").arg(found->type)});
    }
    for (auto column = stored.begin(); column != stored.end(); ++column) {
        if (!table.has(column.key()))
            faults.append({"column unknown", column.key(), QStringLiteral("no version of the schema has this column")});
    }
    if (!table.key.isEmpty() && stored.contains(table.key) && !stored.value(table.key).isKey)
        faults.append({"key missing", table.key, QStringLiteral("the table has no primary key")});
    return faults;
}
