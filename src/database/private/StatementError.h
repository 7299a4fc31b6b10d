#pragma once

#include "database/DataAccessExport.h"
#include "database/DbException.h"

#include <QSqlError>

class QSqlQuery;

namespace DataAccess::Database {

/// Logs @p error, that of a statement, and throws ExecutionException with Backend::errorText().
[[noreturn]] void throwStatementError(const QSqlError& error);
/// The same with @p text, words of our own.
[[noreturn]] void throwStatementError(const QString& text);

/// The exception that tells, in the driver's words, why @p query could not be prepared or run.
DATAACCESS_EXPORT Exceptions::ExecutionException failureOf(const QSqlQuery& query);
/// Logs that exception, and throws it.
[[noreturn]] void throwFailureOf(const QSqlQuery& query);

} // namespace DataAccess::Database
