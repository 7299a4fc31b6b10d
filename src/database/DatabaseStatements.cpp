#include "database/Database.h"
#include "database/ExecutionException.h"
#include "database/NotOpenException.h"
#include "database/PostgresValueConverter.h"
#include "database/QtRowReader.h"
#include "database/QtRowWriter.h"
#include "database/SQLite2ValueConverter.h"
#include "database/SQLite3ValueConverter.h"
#include "database/SharedConnection.h"
#include "database/StatementError.h"
#include "database/native/PostgresRowReader.h"
#include "database/native/PostgresRowWriter.h"
#include "database/native/SqliteRowReader.h"
#include "database/native/SqliteRowWriter.h"
#include "database/sqlite2/CopyWriter.h"

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
    const bool isHopeless = query == &m_query && m_isWithoutConnection; // found out a moment ago, which took its time
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
    // failure among the rows would not be told here.
    query.setForwardOnly(m_config->Type() != Enumerations::Postgres);
    if (!query.exec(sql) || query.lastError().isValid())
        fail(query);
    return query;
}

std::unique_ptr<Interfaces::IRowReader> Database::read(const QString& sql)
{
    requireReady();
    const QSqlDriver& driver = *m_connection->handle().driver();
    std::unique_ptr<Interfaces::IRowReader> reader;
    if (m_config->Type() == Enumerations::Postgres)
        reader = Native::postgresRowReader(driver, sql);
    else if (m_config->Type() == Enumerations::SQLite3)
        reader = Native::sqliteRowReader(driver, sql);
    return reader ? std::move(reader) : std::make_unique<QtRowReader>(*this, Exec(sql));
}

std::unique_ptr<Interfaces::IRowReader> Database::Read(const QString& sql)
{
    // A server that is told to end a connection takes its time when it is busy, and a select changes nothing.
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
    std::unique_ptr<Interfaces::IRowWriter> writer;
    if (m_config->Type() == Enumerations::Postgres)
        writer = Native::postgresRowWriter(query, statement, written, m_connection->session(), makeReady);
    if (!writer && !query.prepare(statement))
        throw failureOf(query);
    if (m_config->Type() == Enumerations::SQLite3)
        writer = Native::sqliteRowWriter(query, written, makeReady);
    return writer ? std::move(writer) : std::make_unique<QtRowWriter>(*this, query, std::move(written));
}

QStringList Database::Tables()
{
    const auto lock = lockConnection();
    requireValid();
    // A list that cannot be read comes back empty, without an error: a locked file must not pass for a fresh one. Asked
    // first, it is waited for once only.
    const bool sqlite = m_config->Type() != Enumerations::Postgres;
    // The legacy driver does not list the table that it has added itself.
    const QString count = sqlite ? QStringLiteral("SELECT count(*) FROM sqlite_master WHERE type = 'table' AND "
                                                  "name <> '%1'")
                                       .arg(Sqlite2::CopyWriter::originTable)
                                 : QStringLiteral("SELECT count(*) FROM pg_class WHERE relkind = 'r' AND "
                                                  "relname !~ '^(Inv|pg_)' AND relnamespace IN "
                                                  "(SELECT oid FROM pg_namespace WHERE nspname = 'public')");
    QSqlQuery check = Exec(count);
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
    switch (m_config ? m_config->Type() : Enumerations::None) {
    case Enumerations::SQLite2:
        return std::make_shared<Converter::SQLite2ValueConverter>(query);
    case Enumerations::SQLite3:
        return std::make_shared<Converter::SQLite3ValueConverter>(query);
    case Enumerations::Postgres:
        return std::make_shared<Converter::PostgresValueConverter>(query);
    default:
        return nullptr;
    }
}

QSqlQuery& Database::Query()
{
    const auto lock = lockConnection();
    // The rows would stand in the way of a preparation; and whoever runs the query past Exec() asks nobody.
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
    const QString statement = m_config->Type() == Enumerations::Postgres
                                  ? QStringLiteral("SELECT nextval('%1_s')")
                                  : QStringLiteral("SELECT IFNULL(MAX(OID),0) + 1 FROM \"%1\" LIMIT 1");
    if (!query.prepare(statement.arg(table)))
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
    if (!m_config || m_config->Type() != Enumerations::Postgres)
        return true;
    return !Exec(QStringLiteral("CREATE SEQUENCE %1_s").arg(name)).lastError().isValid();
}

} // namespace DataAccess::Database
