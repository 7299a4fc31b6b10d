#include "database/private/StatementError.h"

#include "database/LoggingCategories.h"
#include "database/backends/Backend.h"

#include <QSqlDriver>
#include <QSqlQuery>

namespace DataAccess::Database {

using Exceptions::ExecutionException;

namespace {

ExecutionException exceptionOf(const QSqlError& error)
{
    return {Backend::errorText(error).toLocal8Bit().constData(), Backend::isUnavailable(error)};
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

void throwStatementError(const QSqlError& error)
{
    qCCritical(lcDatabase) << "SQL Error:" << Backend::errorText(error);
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
