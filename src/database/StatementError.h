#pragma once

#include "database/DataAccessExport.h"
#include "database/ExecutionException.h"

#include <QSqlError>

class QSqlQuery;

namespace DataAccess::Database {

/// What may be told and logged of @p error: the driver's words, without the values of rows. PostgreSQL adds those to
/// its first line, as details and as the text of the statement, and quotes the value that a type refuses.
DATAACCESS_EXPORT QString errorText(const QSqlError& error);

/// Whether @p error says that the database is locked or out of reach: by the codes of SQLite and PostgreSQL, or as an
/// error of the connection.
DATAACCESS_EXPORT bool isUnavailable(const QSqlError& error);

/// Logs @p error, that of a statement, and throws ExecutionException with errorText().
[[noreturn]] void throwStatementError(const QSqlError& error);
/// The same with words of our own.
[[noreturn]] void throwStatementError(const QString& text);

/// What there is to throw, with the driver's words, when @p query could not be prepared or run.
DATAACCESS_EXPORT Exceptions::ExecutionException failureOf(const QSqlQuery& query);
/// Logs that, and throws it.
[[noreturn]] void throwFailureOf(const QSqlQuery& query);

} // namespace DataAccess::Database
