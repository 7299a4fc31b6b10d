#pragma once

#include <QSqlError>

#include <libpq-fe.h>
#include <memory>

class QSqlDriver;

namespace DataAccess::Database {

/// What a statement gave, freed with the object.
using PostgresResult = std::unique_ptr<PGresult, void (*)(PGresult*)>;

/// The connection of @p driver; null when it has none of PostgreSQL's, or one that does not speak UTF-8.
PGconn* postgresConnection(const QSqlDriver* driver);

/// The failure of @p result, in the words that Qt's driver puts together; that of @p connection itself when the result
/// is null. @p what could not be done.
QSqlError postgresError(const PGconn* connection, const PGresult* result, const char* what);

} // namespace DataAccess::Database
