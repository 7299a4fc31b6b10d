#include "migration/private/UnusedItems.h"

#include "database/LoggingCategories.h"
#include "migration/SchemaChange.h"

#include <QUuid>

#include <algorithm>

namespace DataAccess::Manager {

QStringList UnusedItems::listIds(SchemaChange& schema, const QString& select)
{
    QStringList ids;
    for (const QVariantList& row : schema.rows(select))
        ids.append(row.first().toString());
    ids.removeDuplicates();
    return ids;
}

int UnusedItems::remove(SchemaChange& schema, QStringList unused, const QString& completeSelect,
                        const QString& deleteStatement, const QUuid& exempt)
{
    if (lcMigrationEditor().isDebugEnabled()) {
        qCDebug(lcMigrationEditor) << "unusedList:" << unused;
        qCDebug(lcMigrationEditor) << "completeList:" << listIds(schema, completeSelect);
    }
    const auto isExempt = [&](const QString& id) { return QUuid(id) == exempt; };
    unused.erase(std::remove_if(unused.begin(), unused.end(), isExempt), unused.end());
    if (!unused.isEmpty())
        schema.executeBatch(deleteStatement, {QVariant(unused).toList()});
    return unused.size();
}

} // namespace DataAccess::Manager
