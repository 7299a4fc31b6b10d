#pragma once

#include <QSqlError>

class QSqlDriver;
class QSqlQuery;
struct sqlite3;
struct sqlite3_stmt;

/// SQLite's own databases and statements behind those of Qt SQL. They are null when this library and Qt's driver do not
/// use one and the same copy of SQLite: nothing must be touched by another copy than the one that made it.
namespace DataAccess::Database::Native {

/// The database of @p driver, which is open.
sqlite3* sqliteDatabase(const QSqlDriver& driver);

/// The statement of @p query, which is prepared.
sqlite3_stmt* sqliteStatement(const QSqlQuery& query);

/// What Qt's driver says when @p what has just failed on @p database.
QSqlError sqliteError(sqlite3* database, const char* what);

/// Ends the run of @p statement that has failed. Gives what Qt's driver says of such a failure.
QSqlError errorOfStep(sqlite3_stmt* statement);

} // namespace DataAccess::Database::Native
