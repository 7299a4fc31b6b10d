#pragma once

#include <QString>
#include <QStringList>

class QUuid;

namespace DataAccess::Manager {

class SchemaChange;

/// What the steps share that delete the entries of a list which nothing refers to.
namespace UnusedItems {

/// The ids in the first column of @p select, each once.
QStringList listIds(SchemaChange& schema, const QString& select);
/**
 * Runs @p deleteStatement on the ids in @p unused, except on @p exempt, and returns how many those are. Both lists are
 * logged; @p completeSelect lists the used ids too.
 */
int remove(SchemaChange& schema, QStringList unused, const QString& completeSelect, const QString& deleteStatement,
           const QUuid& exempt);

} // namespace UnusedItems

} // namespace DataAccess::Manager
