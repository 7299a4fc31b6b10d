#include "SchemaCheck.h"

#include "database/IDatabase.h"
#include "transfer/TableRows.h"

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

QHash<QString, StoredColumn> storedColumns(Interfaces::IDatabase& db, const QString& table, bool isPostgres)
{
    QHash<QString, StoredColumn> columns;
    QSqlQuery query =
        db.Exec(isPostgres ? QStringLiteral(
                                 "SELECT a.attname, upper(format_type(a.atttypid, a.atttypmod)), EXISTS (SELECT 1 FROM "
                                 "pg_index AS i WHERE i.indrelid = a.attrelid AND i.indisprimary AND a.attnum = "
                                 "ANY(i.indkey)) FROM pg_attribute AS a WHERE a.attrelid = '\"%1\"'::regclass AND "
                                 "a.attnum > 0 AND NOT a.attisdropped")
                                 .arg(table)
                           : QStringLiteral("SELECT name, upper(type), pk FROM pragma_table_info('%1')").arg(table));
    while (query.next())
        columns.insert(query.value(0).toString(), {query.value(1).toString(), query.value(2).toBool()});
    return columns;
}

/// How the backend's catalogue spells the type of @p column; the sizes of integers are those of their tables.
QStringList expectedTypes(const SchemaColumn& column, bool isPostgres)
{
    switch (column.kind) {
    case Enumerations::Integer:
        return isPostgres ? QStringList{QStringLiteral("INTEGER"), QStringLiteral("BIGINT")}
                          : QStringList{QStringLiteral("INTEGER")};
    case Enumerations::Boolean:
        return {isPostgres ? QStringLiteral("BOOLEAN") : QStringLiteral("INTEGER")};
    case Enumerations::Numeric:
        return {isPostgres ? QStringLiteral("NUMERIC") : QStringLiteral("REAL")};
    case Enumerations::TimeStamp:
        return {isPostgres ? QStringLiteral("TIMESTAMP WITHOUT TIME ZONE") : QStringLiteral("TEXT")};
    case Enumerations::Date:
        return {isPostgres ? QStringLiteral("DATE") : QStringLiteral("TEXT")};
    case Enumerations::ByteArray:
        return {isPostgres ? QStringLiteral("BYTEA") : QStringLiteral("TEXT")};
    default:
        return {QStringLiteral("TEXT")};
    }
}

} // namespace

QVector<SchemaFault> schemaFaults(Interfaces::IDatabase& db, const Transfer::SchemaTable& table)
{
    const bool isPostgres = db.Config()->Type() == Enumerations::Postgres;
    const QHash<QString, StoredColumn> stored = storedColumns(db, table.name, isPostgres);
    QVector<SchemaFault> faults;
    for (const SchemaColumn& column : table.columns) {
        const auto found = stored.constFind(column.name);
        if (found == stored.constEnd())
            faults.append({"column missing", column.name, QStringLiteral("the column is missing"), true});
        else if (!expectedTypes(column, isPostgres).contains(found->type))
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
