#pragma once

#include <QString>

class QSqlDatabase;

/// What the databases' own interfaces know of a connection, without asking a server.
namespace DataAccess::Database::Native {

/// Whether a transaction is open on @p db.
bool hasTransaction(QSqlDatabase& db);

/// False when a transaction is open where the backend would only warn of another BEGIN.
bool canBegin(const QSqlDatabase& db);

/// Whether the last call on @p db met a lock of another program, as far as SQLite can tell.
bool metLock(const QSqlDatabase& db);

/// Why the server has ended the connection of @p db, open and without a transaction, since the last statement; empty
/// when it has not. Takes one system call.
QString endWhileIdle(const QSqlDatabase& db);

} // namespace DataAccess::Database::Native
