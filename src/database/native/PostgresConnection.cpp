#include "database/native/PostgresConnection.h"

#include "database/native/Handle.h"

#include <QSqlDriver>
#include <QSqlError>

namespace DataAccess::Database::Native {

PGconn* postgresConnection(const QSqlDriver* driver)
{
    static const int utf8 = pg_char_to_encoding("UTF8");
    auto* const connection = driver == nullptr ? nullptr : handleAs<PGconn>(driver->handle(), "PGconn*");
    return connection != nullptr && PQclientEncoding(connection) == utf8 ? connection : nullptr;
}

QString postgresErrorText(const PGconn* connection, const PGresult* result, const char* what)
{
    QString message = QString::fromUtf8(result != nullptr ? PQresultErrorMessage(result) : PQerrorMessage(connection));
    if (result != nullptr)
        message += QStringLiteral("(%1)").arg(QLatin1String(PQresultErrorField(result, PG_DIAG_SQLSTATE)));
    return QSqlError(QLatin1String("QPSQL: ") + QLatin1String(what), message).text();
}

} // namespace DataAccess::Database::Native
