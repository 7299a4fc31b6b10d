#include "database/StatementError.h"

#include "database/LoggingCategories.h"

#include <QSqlDriver>
#include <QSqlQuery>
#include <QStringList>

#include <algorithm>

namespace DataAccess::Database {

using Exceptions::ExecutionException;

namespace {

ExecutionException exceptionOf(const QSqlError& error)
{
    return {error.text().toLocal8Bit().constData(), isUnavailable(error)};
}

/// The last error of @p query, which does not tell by itself that the connection is lost or was never open.
QSqlError errorOf(const QSqlQuery& query)
{
    const QSqlError error = query.lastError();
    if (query.driver() == nullptr || query.driver()->isOpen())
        return error;
    const QString words = error.isValid() ? error.databaseText() : QStringLiteral("The connection is not open");
    return QSqlError(error.driverText(), words, QSqlError::ConnectionError, error.nativeErrorCode());
}

} // namespace

bool isUnavailable(const QSqlError& error)
{
    const bool isOfConnection = error.type() == QSqlError::ConnectionError;
    const QString code = error.nativeErrorCode();
    if (code.isEmpty())
        return isOfConnection;
    constexpr int sqlStateSize = 5;
    if (code.size() == sqlStateSize) {
        // Connection lost, server in operation no more or not yet; cancelled after a time-out; lock not available.
        static const QStringList prefixes = {QStringLiteral("08"), QStringLiteral("57P0"), QStringLiteral("57014"),
                                             QStringLiteral("55P03")};
        return isOfConnection || std::any_of(prefixes.begin(), prefixes.end(),
                                             [&](const QString& prefix) { return code.startsWith(prefix); });
    }
    // Of SQLite; Qt calls whatever fails there an error of the connection.
    constexpr int primaryCode = 0xff; // the rest tells SQLite's kinds of one failure apart
    constexpr int busy = 5;
    constexpr int locked = 6;
    const int primary = code.toInt() & primaryCode;
    return primary == busy || primary == locked;
}

void throwStatementError(const QSqlError& error)
{
    qCCritical(lcDatabase) << "SQL Error:" << error.text();
    throw exceptionOf(error);
}

void throwStatementError(const QString& text)
{
    throwStatementError(QSqlError(QString(), text, QSqlError::StatementError));
}

ExecutionException failureOf(const QSqlQuery& query)
{
    return exceptionOf(errorOf(query));
}

void throwFailureOf(const QSqlQuery& query)
{
    throwStatementError(errorOf(query));
}

} // namespace DataAccess::Database
