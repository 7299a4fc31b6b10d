#include "database/backends/postgres/PostgresConnection.h"

#include "database/backends/Handle.h"

#include <QSqlDriver>

namespace DataAccess::Database {

PGconn* postgresConnection(const QSqlDriver* driver)
{
    static const int utf8 = pg_char_to_encoding("UTF8");
    auto* const connection = driver == nullptr ? nullptr : handleAs<PGconn>(driver->handle(), "PGconn*");
    return connection != nullptr && PQclientEncoding(connection) == utf8 ? connection : nullptr;
}

QSqlError postgresError(const PGconn* connection, const PGresult* result, const char* what)
{
    QString message = QString::fromUtf8(result != nullptr ? PQresultErrorMessage(result) : PQerrorMessage(connection));
    const QString code = QLatin1String(PQresultErrorField(result, PG_DIAG_SQLSTATE));
    if (result != nullptr)
        message += QStringLiteral("(%1)").arg(code);
    const bool isLost = PQstatus(connection) != CONNECTION_OK;
    return QSqlError(QLatin1String("QPSQL: ") + QLatin1String(what), message,
                     isLost ? QSqlError::ConnectionError : QSqlError::StatementError, code);
}

} // namespace DataAccess::Database
