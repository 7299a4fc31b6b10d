#include "database/native/ConnectionState.h"

#include "database/StatementError.h"
#include "database/native/PostgresConnection.h"
#include "database/native/SqliteStatement.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>

#include <poll.h>
#include <sqlite3.h>

namespace DataAccess::Database::Native {

namespace {

/// Keeps in @p reason, a text, what ends a connection.
void keepFatal(void* reason, const PGresult* notice)
{
    const char* const severity = PQresultErrorField(notice, PG_DIAG_SEVERITY_NONLOCALIZED);
    if (qstrcmp(severity, "FATAL") == 0 || qstrcmp(severity, "PANIC") == 0)
        *static_cast<QString*>(reason) = QString::fromUtf8(PQresultErrorMessage(notice)).trimmed();
}

} // namespace

bool hasTransaction(QSqlDatabase& db)
{
    if (!db.isOpen())
        return false;
    if (sqlite3* const sqlite = sqliteDatabase(*db.driver()))
        return sqlite3_get_autocommit(sqlite) == 0;
    if (const PGconn* const server = postgresConnection(db.driver()))
        return PQtransactionStatus(server) != PQTRANS_IDLE;
    // Another copy of SQLite cannot be asked. It has no nested transactions: one begins only where there is none.
    if (db.driver()->dbmsType() == QSqlDriver::SQLite && db.transaction()) {
        db.rollback();
        return false;
    }
    return true;
}

bool canBegin(const QSqlDatabase& db)
{
    const PGconn* const server = postgresConnection(db.driver());
    if (server == nullptr)
        return true;
    if (PQpipelineStatus(server) != PQ_PIPELINE_OFF)
        return false;
    // A select that was not read to its end hides the state, until another statement ends it.
    if (PQtransactionStatus(server) == PQTRANS_ACTIVE)
        QSqlQuery(db).exec(QStringLiteral("SELECT 1"));
    const PGTransactionStatusType status = PQtransactionStatus(server);
    return status != PQTRANS_INTRANS && status != PQTRANS_INERROR;
}

bool metLock(const QSqlDatabase& db)
{
    sqlite3* const sqlite = db.isOpen() ? sqliteDatabase(*db.driver()) : nullptr;
    return sqlite != nullptr && isUnavailable(sqliteError(sqlite, ""));
}

QString endWhileIdle(const QSqlDatabase& db)
{
    PGconn* const server = postgresConnection(db.driver());
    if (server == nullptr || PQtransactionStatus(server) != PQTRANS_IDLE)
        return {};
    pollfd socket = {PQsocket(server), POLLIN, 0};
    while (poll(&socket, 1, 0) > 0) {
        if (PQconsumeInput(server) == 0)
            return QString::fromUtf8(PQerrorMessage(server)).trimmed();
        // The server gives its reason before it closes the connection, which takes it a moment longer.
        QString reason;
        const PQnoticeReceiver receiver = PQsetNoticeReceiver(server, &keepFatal, &reason);
        PQisBusy(server); // hands over what has come
        PQsetNoticeReceiver(server, receiver, nullptr);
        if (!reason.isEmpty())
            return reason;
    }
    return {};
}

} // namespace DataAccess::Database::Native
