#include "database/StatementError.h"

#include "database/LoggingCategories.h"

#include <QRegularExpression>
#include <QSqlDriver>
#include <QSqlQuery>
#include <QStringList>

#include <algorithm>

namespace DataAccess::Database {

using Exceptions::ExecutionException;

namespace {

constexpr int s_sqlStateSize = 5;

/// What the server says first, of @p words that may go on with the statement and the values it was run with.
QString primaryMessage(const QString& words, const QString& code)
{
    QString message = words.section(QLatin1Char('\n'), 0, 0);
    // Only what is wrong with a value (class 22) is told by quoting it; else the quotes are around names.
    const int quote = code.startsWith(QLatin1String("22")) ? message.indexOf(QLatin1Char('"')) : -1;
    if (quote >= 0) {
        static const QRegularExpression rest(QStringLiteral("\"( is out of range for type [a-z ]+)$"));
        message = message.left(quote) + QStringLiteral("\"...\"") + rest.match(message).captured(1);
    }
    return QStringLiteral("%1 (%2)").arg(message, code);
}

ExecutionException exceptionOf(const QSqlError& error)
{
    return {errorText(error).toLocal8Bit().constData(), isUnavailable(error)};
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

QString errorText(const QSqlError& error)
{
    const QString code = error.nativeErrorCode();
    if (code.size() != s_sqlStateSize)
        return error.text();
    return QSqlError(error.driverText(), primaryMessage(error.databaseText(), code), error.type()).text();
}

bool isUnavailable(const QSqlError& error)
{
    const bool isOfConnection = error.type() == QSqlError::ConnectionError;
    const QString code = error.nativeErrorCode();
    if (code.isEmpty())
        return isOfConnection;
    if (code.size() == s_sqlStateSize) {
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
    qCCritical(lcDatabase) << "SQL Error:" << errorText(error);
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
