#include "database/Database.h"

#include "database/ExecutionException.h"
#include "database/InvalidDbException.h"
#include "database/LoggingCategories.h"
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

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlResult>
#include <QThread>
#include <QVariant>

#include <algorithm>
#include <utility>

namespace DataAccess::Database {

using namespace Exceptions;

namespace {

/// A query of no connection. The default constructor would look up the application's default connection.
QSqlQuery emptyQuery()
{
    return QSqlQuery(static_cast<QSqlResult*>(nullptr));
}

std::shared_ptr<SharedConnection> acquireConnection(const std::shared_ptr<Interfaces::IConfig>& config)
{
    if (!config) {
        qCCritical(lcDatabase) << "Config is null";
        return nullptr;
    }
    if (!config->IsValid()) {
        qCCritical(lcDatabase) << "Invalid Config" << config->ConnectionName() << config->DatabaseName()
                               << static_cast<int>(config->Type());
        return nullptr;
    }
    std::shared_ptr<SharedConnection> connection = SharedConnection::acquire(*config);
    const QSqlDatabase& handle = connection->handle();
    if (handle.isValid()) {
        qCDebug(lcDatabase) << "Using database:" << config->ConnectionName();
    } else {
        qCDebug(lcDatabase) << "Error initialising database" << config->ConnectionName() << ":"
                            << config->DatabaseName() << ":" << handle.lastError().text();
    }
    return connection;
}

} // namespace

Database::Database(std::shared_ptr<Interfaces::IConfig> config, QObject* parent)
    : QObject(parent)
    , m_connection(acquireConnection(config))
    , m_config(std::move(config))
    , m_query(emptyQuery())
{}

Database::~Database()
{
    if (!m_connection)
        return;
    {
        const auto lock = lockConnection();
        resetQuery();
    }
    SharedConnection::release(m_connection);
}

std::unique_lock<std::recursive_mutex> Database::lockConnection() const
{
    return m_connection ? std::unique_lock<std::recursive_mutex>(m_connection->mutex())
                        : std::unique_lock<std::recursive_mutex>();
}

bool Database::IsOpen()
{
    const auto lock = lockConnection();
    return m_connection && m_connection->handle().isOpen();
}

bool Database::IsBusy()
{
    return false;
}

bool Database::IsValid() const
{
    const auto lock = lockConnection();
    return m_connection && m_connection->handle().isValid();
}

void Database::requireValid() const
{
    if (IsValid())
        return;
    qCCritical(lcDatabase) << "QSqlDatabase invalid";
    throw InvalidDbException("QSqlDatabase invalid");
}

bool Database::open()
{
    requireValid();
    if (m_connection->open())
        return true;
    qCCritical(lcDatabase) << "Can't open connection" << m_connection->openError();
    return false;
}

void Database::requireOpen()
{
    if (!open())
        throw NotOpenException("Can't open Connection");
}

void Database::resetQuery()
{
    m_query = emptyQuery();
    m_prepared.clear();
}

void Database::fail(const QSqlQuery& query)
{
    // What was prepared may be lost together with the connection.
    m_prepared.clear();
    throwStatementError(query.lastError().text());
}

bool Database::Connect()
{
    const auto lock = lockConnection();
    return open();
}

bool Database::Disconnect()
{
    const auto lock = lockConnection();
    requireValid();
    resetQuery();
    m_connection->close();
    return !m_connection->handle().isOpen();
}

bool Database::Exec(QSqlQuery& query)
{
    const auto lock = lockConnection();
    requireOpen();
    if (!query.exec())
        fail(query);
    return true;
}

bool Database::ExecBatch(QSqlQuery& query)
{
    const auto lock = lockConnection();
    requireOpen();
    if (!query.execBatch(QSqlQuery::ValuesAsRows))
        fail(query);
    return true;
}

QSqlQuery Database::run(const QString& sql, bool forwardOnly)
{
    const auto lock = lockConnection();
    requireOpen();
    QSqlQuery query(m_connection->handle());
    query.setForwardOnly(forwardOnly);
    if (!query.exec(sql) || query.lastError().isValid())
        fail(query);
    return query;
}

QSqlQuery Database::Exec(const QString& sql)
{
    return run(sql, true);
}

std::unique_ptr<Interfaces::IRowReader> Database::Read(const QString& sql)
{
    const auto lock = lockConnection();
    requireOpen();
    m_prepared.clear();
    const QSqlDriver& driver = *m_connection->handle().driver();
    const bool postgres = m_config->Type() == Enumerations::Postgres;
    std::unique_ptr<Interfaces::IRowReader> reader;
    if (postgres)
        reader = Native::postgresRowReader(driver, sql);
    else if (m_config->Type() == Enumerations::SQLite3)
        reader = Native::sqliteRowReader(driver, sql);
    // Forwards only, PostgreSQL's driver would ask for one row at a time, which takes much longer than a whole result.
    return reader ? std::move(reader) : std::make_unique<QtRowReader>(*this, run(sql, !postgres));
}

std::unique_ptr<Interfaces::IRowWriter> Database::Write(const QString& statement, std::function<void()> written)
{
    const auto lock = lockConnection();
    requireOpen();
    m_prepared.clear();
    QSqlQuery query(m_connection->handle());
    std::unique_ptr<Interfaces::IRowWriter> writer;
    if (m_config->Type() == Enumerations::Postgres)
        writer = Native::postgresRowWriter(query, statement, written);
    if (!writer && !query.prepare(statement))
        throw ExecutionException(query.lastError().text().toLocal8Bit().constData());
    if (m_config->Type() == Enumerations::SQLite3)
        writer = Native::sqliteRowWriter(query, written);
    return writer ? std::move(writer) : std::make_unique<QtRowWriter>(*this, query, std::move(written));
}

QStringList Database::Tables()
{
    const auto lock = lockConnection();
    requireOpen();
    // A list that cannot be read comes back empty, without an error: a locked file must not pass for a fresh one. Asked
    // first, it is waited for once only.
    const bool sqlite = m_config->Type() != Enumerations::Postgres;
    // The legacy driver does not list the table that it has added itself.
    QSqlQuery check = Exec(sqlite ? QStringLiteral("SELECT count(*) FROM sqlite_master WHERE type = 'table' AND "
                                                   "name <> '%1'")
                                        .arg(Sqlite2::CopyWriter::originTable)
                                  : QStringLiteral("SELECT 0"));
    const bool expected = !check.next() || check.value(0).toInt() != 0;
    check.finish();
    QStringList tables = m_connection->handle().tables(QSql::Tables);
    if (tables.isEmpty() && expected)
        throw ExecutionException("The tables of the database cannot be listed");
    const auto isSystemTable = [](const QString& name) { return name.startsWith(QLatin1String("sqlite_")); };
    tables.erase(std::remove_if(tables.begin(), tables.end(), isSystemTable), tables.end());
    return tables;
}

std::shared_ptr<Interfaces::IConfig> Database::Config()
{
    return m_config;
}

Transaction Database::Transaction()
{
    const auto lock = lockConnection();
    requireOpen();
    return ::DataAccess::Database::Transaction(&m_connection->handle());
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
    Connect();
    resetQuery();
    m_query = QSqlQuery(m_connection->handle());
    return m_query;
}

QSqlQuery& Database::PreparedQuery(const QString& statement)
{
    const auto lock = lockConnection();
    if (m_prepared.isNull() || m_prepared != statement) {
        if (Query().prepare(statement))
            m_prepared = statement;
    }
    return m_query;
}

quint64 Database::NextId(const QString& table)
{
    const auto lock = lockConnection();
    requireOpen();
    QSqlQuery& query = Query();
    query.setForwardOnly(true);
    const QString statement = m_config->Type() == Enumerations::Postgres
                                  ? QStringLiteral("SELECT nextval('%1_s')")
                                  : QStringLiteral("SELECT IFNULL(MAX(OID),0) + 1 FROM \"%1\" LIMIT 1");
    if (!query.prepare(statement.arg(table)))
        fail(query);
    Exec(query);
    if (!query.next())
        throw ExecutionException(query.lastError().text().toLocal8Bit().constData());
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

bool Database::WasBlockedByStartup() const
{
    const auto lock = lockConnection();
    const QSqlError error = m_connection ? m_connection->lastError() : QSqlDatabase().lastError();
    return error.nativeErrorCode() == QLatin1String("57P03") || error.type() == QSqlError::ConnectionError;
}

QString Database::OpenError() const
{
    const auto lock = lockConnection();
    return m_connection ? m_connection->openError() : QString();
}

void Database::BeginJob()
{
    if (m_connection)
        m_connection->mutex().lock();
}

void Database::EndJob()
{
    // A select that was not read to its end would keep the file locked for writers until the next job.
    resetQuery();
    if (m_connection)
        m_connection->mutex().unlock();
}

void Database::moveConnectionToThread(QThread* thread)
{
    const auto lock = lockConnection();
    if (m_connection)
        m_connection->moveToThread(thread);
}

void Database::leaveThread()
{
    const auto lock = lockConnection();
    if (!m_connection)
        return;
    resetQuery();
    m_connection->closeUnlessShared();
    m_connection->moveToThread(nullptr);
}

} // namespace DataAccess::Database
