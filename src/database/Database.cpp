#include "database/Database.h"

#include "database/DbException.h"
#include "database/Failure.h"
#include "database/LoggingCategories.h"
#include "database/backends/Backend.h"
#include "database/private/SharedConnection.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlResult>
#include <QThread>

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

const Backend& Database::backend() const
{
    return Backend::of(m_config ? m_config->Type() : Enumerations::None);
}

bool Database::isConnected() const
{
    if (!m_connection->handle().isOpen())
        return false;
    const QString reason = Backend::of(m_connection->handle()).endWhileIdle(m_connection->handle());
    if (reason.isEmpty())
        return true;
    qCWarning(lcDatabase) << "Connection was ended by the server:" << m_config->ConnectionName() << reason;
    return false;
}

bool Database::reopen()
{
    resetQuery();
    m_connection->close();
    const bool isOpen = m_connection->open();
    m_query = QSqlQuery(m_connection->handle()); // There may be a reference to it.
    if (isOpen)
        return true;
    qCCritical(lcDatabase) << "Can't open connection" << m_connection->openError();
    return false;
}

bool Database::hasFoundDead()
{
    return !m_connection->handle().isOpen() && !m_connection->session().hasLostTransaction();
}

void Database::resetQuery()
{
    m_query = emptyQuery();
    m_prepared.clear();
    m_isWithoutConnection = false;
}

bool Database::Connect()
{
    const auto lock = lockConnection();
    requireValid();
    return isConnected() || reopen();
}

bool Database::Disconnect()
{
    const auto lock = lockConnection();
    requireValid();
    m_connection->session().abandonRows();
    resetQuery();
    m_connection->close();
    return !m_connection->handle().isOpen();
}

std::shared_ptr<Interfaces::IConfig> Database::Config()
{
    return m_config;
}

Transaction Database::Transaction()
{
    const auto lock = lockConnection();
    return begin({});
}

Transaction Database::WriteTransaction()
{
    const auto lock = lockConnection();
    return begin(backend().writeBegin());
}

Transaction Database::begin(const QString& statement)
{
    const auto attempt = [&] {
        requireReady();
        return ::DataAccess::Database::Transaction(m_connection->handle(), m_connection->session(), statement);
    };
    auto transaction = attempt();
    if (!transaction.isOpen() && hasFoundDead())
        transaction = attempt();
    if (!transaction.isOpen()) {
        const bool isUnavailable = transaction.isUnavailable();
        qCCritical(lcDatabase) << "Can't begin a transaction:" << transaction.lastError();
        FailureWatch::report(
            {transaction.lastError(), isUnavailable ? Failure::Kind::Unavailable : Failure::Kind::Statement, {}, {}});
    }
    return transaction;
}

bool Database::WasBlockedByStartup() const
{
    const auto lock = lockConnection();
    const QSqlError error = m_connection ? m_connection->lastError() : QSqlDatabase().lastError();
    return backend().mayComeUp(error);
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
