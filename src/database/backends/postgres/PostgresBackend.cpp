#include "database/backends/postgres/PostgresBackend.h"

#include "database/backends/postgres/PostgresConnection.h"

#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStringList>

#include <algorithm>
#include <memory>
#include <poll.h>
#include <stdexcept>

namespace DataAccess::Database {

const Backend& postgresBackend()
{
    static const PostgresBackend backend;
    return backend;
}

namespace {

/// Keeps in @p reason, a text, what ends a connection.
void keepFatal(void* reason, const PGresult* notice)
{
    const char* const severity = PQresultErrorField(notice, PG_DIAG_SEVERITY_NONLOCALIZED);
    if (qstrcmp(severity, "FATAL") == 0 || qstrcmp(severity, "PANIC") == 0)
        *static_cast<QString*>(reason) = QString::fromUtf8(PQresultErrorMessage(notice)).trimmed();
}

constexpr int s_sqlStateSize = 5;

/// What the server says first, of @p words that may go on with the statement and the values it was run with.
QString primaryMessage(const QString& words, const QString& code)
{
    QString message = words.section(QLatin1Char('\n'), 0, 0);
    // The quotes are around a value only where that value is wrong (class 22); else they are around names.
    const int quote = code.startsWith(QLatin1String("22")) ? message.indexOf(QLatin1Char('"')) : -1;
    if (quote >= 0) {
        static const QRegularExpression rest(QStringLiteral("\"( is out of range for type [a-z ]+)$"));
        message = message.left(quote) + QStringLiteral("\"...\"") + rest.match(message).captured(1);
    }
    return QStringLiteral("%1 (%2)").arg(message, code);
}

} // namespace

PostgresBackend::PostgresBackend()
    : Backend(Enumerations::Postgres)
{}

bool PostgresBackend::mayComeUp(const QSqlError& error) const
{
    return error.nativeErrorCode() == QLatin1String("57P03") || Backend::mayComeUp(error);
}

QString PostgresBackend::textWithoutValues(const QSqlError& error) const
{
    // The server adds the values to its first line, as details and as the text of the statement.
    const QString code = error.nativeErrorCode();
    return code.size() == s_sqlStateSize
               ? QSqlError(error.driverText(), primaryMessage(error.databaseText(), code), error.type()).text()
               : QString();
}

bool PostgresBackend::tellsUnavailable(const QSqlError& error) const
{
    const QString code = error.nativeErrorCode();
    if (code.size() != s_sqlStateSize)
        return false;
    // Connection lost, server in operation no more or not yet; cancelled after a time-out; lock not available.
    static const QStringList prefixes = {QStringLiteral("08"), QStringLiteral("57P0"), QStringLiteral("57014"),
                                         QStringLiteral("55P03")};
    return error.type() == QSqlError::ConnectionError ||
           std::any_of(prefixes.begin(), prefixes.end(),
                       [&](const QString& prefix) { return code.startsWith(prefix); });
}

bool PostgresBackend::hasTransaction(QSqlDatabase& connection) const
{
    if (!connection.isOpen())
        return false;
    const PGconn* const server = postgresConnection(connection.driver());
    return server == nullptr || PQtransactionStatus(server) != PQTRANS_IDLE;
}

bool PostgresBackend::canBegin(const QSqlDatabase& connection) const
{
    const PGconn* const server = postgresConnection(connection.driver());
    if (server == nullptr)
        return true;
    if (PQpipelineStatus(server) != PQ_PIPELINE_OFF)
        return false;
    // A select that was not read to its end hides the state, until another statement ends it.
    if (PQtransactionStatus(server) == PQTRANS_ACTIVE)
        QSqlQuery(connection).exec(QStringLiteral("SELECT 1"));
    const PGTransactionStatusType status = PQtransactionStatus(server);
    return status != PQTRANS_INTRANS && status != PQTRANS_INERROR;
}

QString PostgresBackend::endWhileIdle(const QSqlDatabase& connection) const
{
    PGconn* const server = postgresConnection(connection.driver());
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

std::shared_ptr<Interfaces::IValueConverter> PostgresBackend::converter(QSqlQuery& query) const
{
    return std::make_shared<Converter::PostgresValueConverter>(query);
}

QString PostgresBackend::tableCount() const
{
    return QStringLiteral("SELECT count(*) FROM pg_class WHERE relkind = 'r' AND relname !~ '^(Inv|pg_)' AND "
                          "relnamespace IN (SELECT oid FROM pg_namespace WHERE nspname = 'public')");
}

QString PostgresBackend::snapshot() const
{
    return QStringLiteral("SET TRANSACTION ISOLATION LEVEL REPEATABLE READ READ ONLY");
}

QString PostgresBackend::isTrue() const
{
    return QStringLiteral("coalesce(%1, false)");
}

QString PostgresBackend::columnSearch() const
{
    return QStringLiteral("SELECT a.attname, upper(format_type(a.atttypid, a.atttypmod)), EXISTS (SELECT 1 FROM "
                          "pg_index AS i WHERE i.indrelid = a.attrelid AND i.indisprimary AND a.attnum = "
                          "ANY(i.indkey)) FROM pg_attribute AS a WHERE a.attrelid = '\"%1\"'::regclass AND "
                          "a.attnum > 0 AND NOT a.attisdropped");
}

QStringList PostgresBackend::columnTypes(Enumerations::DataType kind) const
{
    switch (kind) {
    case Enumerations::Integer:
        return {QStringLiteral("INTEGER"), QStringLiteral("BIGINT")};
    case Enumerations::Boolean:
        return {QStringLiteral("BOOLEAN")};
    case Enumerations::Numeric:
        return {QStringLiteral("NUMERIC")};
    case Enumerations::TimeStamp:
        return {QStringLiteral("TIMESTAMP WITHOUT TIME ZONE")};
    case Enumerations::Date:
        return {QStringLiteral("DATE")};
    case Enumerations::ByteArray:
        return {QStringLiteral("BYTEA")};
    default:
        return {QStringLiteral("TEXT")};
    }
}

QString PostgresBackend::lastTime() const
{
    return QStringLiteral("SELECT to_char(max(\"timestamp\"), 'YYYY-MM-DD HH24:MI:SS.MS') FROM \"%1\"");
}

bool PostgresBackend::mayPass(const QString& reason) const
{
    const auto says = [&](const char* words) { return reason.contains(QLatin1String(words)); };
    const bool isFinal =
        says("no password supplied") || says("does not support SSL") || says("certificate") ||
        (says("FATAL:") && !says("starting up") && !says("shutting down") && !says("too many") && !says("recovery"));
    return !isFinal;
}

QVector<QPair<QString, QString>> parsePostgresAddress(const QString& address)
{
    char* reason = nullptr;
    const std::unique_ptr<PQconninfoOption, void (*)(PQconninfoOption*)> options(
        PQconninfoParse(address.toUtf8().constData(), &reason), &PQconninfoFree);
    PQfreemem(reason);
    if (!options)
        throw std::invalid_argument("no valid address of a PostgreSQL database");
    QVector<QPair<QString, QString>> said;
    for (const PQconninfoOption* option = options.get(); option->keyword != nullptr; ++option) {
        if (option->val != nullptr)
            said.append({QString::fromLatin1(option->keyword), QString::fromUtf8(option->val)});
    }
    return said;
}

} // namespace DataAccess::Database
