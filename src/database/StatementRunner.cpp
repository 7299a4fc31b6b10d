#include "database/StatementRunner.h"

#include "database/DbException.h"
#include "database/IDatabase.h"
#include "database/backends/Backend.h"

#include <QDateTime>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

namespace DataAccess::Database {

using Exceptions::DbException;
using Exceptions::ExecutionException;
using Interfaces::IDatabase;

namespace {

[[noreturn]] void fail(const char* what, const QString& reason, bool unavailable = false)
{
    const QString text = QLatin1String(what) + QLatin1Char(' ') + reason;
    throw ExecutionException(text.toLocal8Bit().constData(), unavailable);
}

/// Runs @p statement and says on failure what has failed.
template <typename Function>
auto attempt(const char* what, Function statement)
{
    try {
        return statement();
    } catch (const DbException& error) {
        fail(what, QString::fromLocal8Bit(error.what()), error.isUnavailable());
    }
}

constexpr const char* executionFailed = "execution of query failed:";

QSqlQuery& prepare(IDatabase& db, const QString& statement)
{
    QSqlQuery& query = db.Query();
    query.setForwardOnly(true);
    if (!query.prepare(statement))
        fail("preparation of query failed:", Database::Backend::errorText(query.lastError()));
    return query;
}

QSqlQuery& executePrepared(IDatabase& db, const QString& statement, const StatementRunner::Values& values)
{
    QSqlQuery& query = prepare(db, statement);
    for (const auto& value : values)
        query.bindValue(value.first, value.second);
    attempt(executionFailed, [&] { return db.Exec(query); });
    return query;
}

/// The server would take a date-time for one of the client's time zone; as text it is stored as it stands.
QVariant bindable(const QVariant& value)
{
    if (value.type() != QVariant::DateTime)
        return value;
    const QDateTime time = value.toDateTime();
    if (!time.date().isValid())
        return QVariant(QVariant::String);
    QString text = QDateTime(time.date(), time.time(), Qt::UTC).toString(Qt::ISODateWithMs);
    text.chop(1);
    return text;
}

/// All rows are read before the next statement is issued: a select that is still walked would stand in its way.
StatementRunner::Rows readAll(QSqlQuery& query)
{
    StatementRunner::Rows rows;
    const int columns = query.record().count();
    while (query.next()) {
        QVariantList row;
        for (int column = 0; column < columns; ++column)
            row.append(bindable(query.value(column)));
        rows.append(row);
    }
    if (query.lastError().isValid())
        fail(executionFailed, Database::Backend::errorText(query.lastError()));
    return rows;
}

} // namespace

StatementRunner::StatementRunner(IDatabase& db)
    : m_db(db)
{}

const SchemaDialect& StatementRunner::dialect() const
{
    return Backend::of(m_db).schemaDialect();
}

void StatementRunner::execute(const QString& statement)
{
    attempt(executionFailed, [&] { m_db.Exec(statement); });
}

int StatementRunner::execute(const QString& statement, const Values& values)
{
    return executePrepared(m_db, statement, values).numRowsAffected();
}

void StatementRunner::executeBatch(const QString& statement, const QVector<QVariantList>& columns)
{
    QSqlQuery& query = prepare(m_db, statement);
    for (const QVariantList& column : columns)
        query.addBindValue(column);
    attempt("execBatch failed:", [&] { return m_db.ExecBatch(query); });
}

StatementRunner::Rows StatementRunner::rows(const QString& select)
{
    QSqlQuery query = attempt(executionFailed, [&] { return m_db.Exec(select); });
    return readAll(query);
}

StatementRunner::Rows StatementRunner::rows(const QString& select, const Values& values)
{
    return readAll(executePrepared(m_db, select, values));
}

qint64 StatementRunner::count(const QString& table)
{
    return rows(QStringLiteral("SELECT count(*) FROM \"%1\"").arg(table)).first().first().toLongLong();
}

} // namespace DataAccess::Database
