#include "database/Database.h"
#include "database/DbException.h"
#include "database/backends/Backend.h"
#include "database/private/QtRows.h"
#include "database/private/SharedConnection.h"
#include "database/private/StatementError.h"

#include <QElapsedTimer>
#include <QMap>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>
#include <utility>

/// The statements of Database; all else is in Database.cpp.
namespace DataAccess::Database {

using namespace Exceptions;

namespace {

/// How a query was prepared, so that it can be repeated on another connection.
class Preparation
{
public:
    /// Null, and a query that is not prepared, give one that repeats nothing.
    explicit Preparation(const QSqlQuery* query)
    {
        if (query == nullptr || query->result() == nullptr)
            return;
        m_statement = query->lastQuery();
        m_values = query->boundValues();
        m_isForwardOnly = query->isForwardOnly();
    }

    /// Prepares @p query on @p connection with the named values. False when that fails.
    bool repeatOn(QSqlQuery& query, const QSqlDatabase& connection) const
    {
        if (m_statement.isEmpty())
            return true;
        query = QSqlQuery(connection);
        query.setForwardOnly(m_isForwardOnly);
        if (!query.prepare(m_statement))
            return false;
        for (auto value = m_values.begin(); value != m_values.end(); ++value)
            query.bindValue(value.key(), value.value());
        return true;
    }

private:
    QString m_statement;
    QMap<QString, QVariant> m_values;
    bool m_isForwardOnly = false;
};

} // namespace

void Database::settle()
{
    requireValid();
    Session& session = m_connection->session();
    session.settleRows();
    if (session.hasLostTransaction()) {
        const QString words = QStringLiteral("The transaction was ended by the database: nothing more is done in it");
        throwStatementError(QSqlError(QString(), words, QSqlError::ConnectionError));
    }
}

void Database::requireReady(QSqlQuery* query)
{
    settle();
    if (isConnected())
        return;
    const Preparation preparation(query);
    const bool isHopeless = query == &m_query && m_isWithoutConnection; // a moment ago, after waiting
    if (isHopeless || !reopen())
        throw NotOpenException("Can't open Connection");
    if (query != nullptr && !preparation.repeatOn(*query, m_connection->handle()))
        fail(*query);
}

void Database::fail(const QSqlQuery& query)
{
    // What was prepared may be lost together with the connection.
    m_prepared.clear();
    throwFailureOf(query);
}

bool Database::Exec(QSqlQuery& query)
{
    const auto lock = lockConnection();
    requireReady(&query);
    if (!query.exec())
        fail(query);
    return true;
}

bool Database::ExecBatch(QSqlQuery& query)
{
    const auto lock = lockConnection();
    requireReady(&query);
    if (!query.execBatch(QSqlQuery::ValuesAsRows))
        fail(query);
    return true;
}

QSqlQuery Database::Exec(const QString& sql)
{
    const auto lock = lockConnection();
    requireReady();
    QSqlQuery query(m_connection->handle());
    // Forwards only, PostgreSQL's driver asks for one row at a time: the next statement would end the reading, and a
    // failure among the rows would not be seen here.
    query.setForwardOnly(backend().readsForwards());
    if (!query.exec(sql) || query.lastError().isValid())
        fail(query);
    return query;
}

std::unique_ptr<Interfaces::IRowReader> Database::read(const QString& sql)
{
    requireReady();
    auto reader = backend().reader(*m_connection->handle().driver(), sql);
    return reader ? std::move(reader) : std::make_unique<QtRowReader>(*this, Exec(sql));
}

std::unique_ptr<Interfaces::IRowReader> Database::Read(const QString& sql)
{
    // A busy server ends a connection only a while after it was told to. A select may be repeated: it changes nothing.
    constexpr qint64 atOnce = 1000; // milliseconds
    const auto lock = lockConnection();
    m_prepared.clear();
    QElapsedTimer timer;
    timer.start();
    try {
        return read(sql);
    } catch (const ExecutionException&) {
        // One that ran for a while was under way when the connection was lost.
        if (!hasFoundDead() || timer.hasExpired(atOnce))
            throw;
    }
    return read(sql);
}

std::unique_ptr<Interfaces::IRowWriter> Database::Write(const QString& statement, std::function<void()> written)
{
    const auto lock = lockConnection();
    requireReady();
    m_prepared.clear();
    const auto makeReady = [this] {
        const auto use = lockConnection();
        requireReady();
    };
    QSqlQuery query(m_connection->handle());
    auto writer = backend().writer(query, statement, written, m_connection->session(), makeReady);
    if (writer)
        return writer;
    if (!query.prepare(statement))
        throw failureOf(query);
    return std::make_unique<QtRowWriter>(*this, query, std::move(written));
}

QStringList Database::Tables()
{
    const auto lock = lockConnection();
    requireValid();
    // The driver answers with an empty list, and no error, when it cannot read the tables: a locked file must not pass
    // for a fresh one. The count comes first, so that a lock is waited for only once.
    QSqlQuery check = Exec(backend().tableCount());
    const bool expected = !check.next() || check.value(0).toInt() != 0;
    check.finish();
    QStringList tables = m_connection->handle().tables(QSql::Tables);
    if (tables.isEmpty() && expected)
        throwStatementError(QStringLiteral("The tables of the database cannot be listed"));
    const auto isSystemTable = [](const QString& name) { return name.startsWith(QLatin1String("sqlite_")); };
    tables.erase(std::remove_if(tables.begin(), tables.end(), isSystemTable), tables.end());
    return tables;
}

std::shared_ptr<Interfaces::IValueConverter> Database::Converter()
{
    return Converter(Query());
}

std::shared_ptr<Interfaces::IValueConverter> Database::Converter(QSqlQuery& query)
{
    return backend().converter(query);
}

QSqlQuery& Database::Query()
{
    const auto lock = lockConnection();
    // Rows sent ahead would stand in the way of a preparation; and the query may be run without Exec().
    settle();
    const bool isOpen = Connect();
    resetQuery();
    m_query = QSqlQuery(m_connection->handle());
    m_isWithoutConnection = !isOpen;
    return m_query;
}

QSqlQuery& Database::PreparedQuery(const QString& statement)
{
    const auto lock = lockConnection();
    if (m_prepared.isNull() || m_prepared != statement) {
        if (Query().prepare(statement) || (!m_isWithoutConnection && hasFoundDead() && Query().prepare(statement)))
            m_prepared = statement;
    }
    return m_query;
}

quint64 Database::NextId(const QString& table)
{
    const auto lock = lockConnection();
    requireReady();
    QSqlQuery& query = Query();
    query.setForwardOnly(true);
    if (!query.prepare(backend().nextId().arg(table)))
        fail(query);
    Exec(query);
    if (!query.next())
        throw failureOf(query);
    const QVariant value = query.value(0);
    query.finish(); // A select that is under way keeps the table from being changed.
    bool converted = false;
    const quint64 id = value.toULongLong(&converted);
    if (!converted) {
        const QString text = QStringLiteral("%1 can't convert '%2' to id").arg(table, value.toString());
        throw ExecutionException(text.toLocal8Bit().constData());
    }
    return id;
}

bool Database::CreateSequence(const QString& name)
{
    const QString statement = backend().sequenceCreation();
    return statement.isEmpty() || !Exec(statement.arg(name)).lastError().isValid();
}

} // namespace DataAccess::Database
