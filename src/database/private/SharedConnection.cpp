#include "database/private/SharedConnection.h"

#include "database/IConfig.h"
#include "database/LoggingCategories.h"
#include "database/backends/Backend.h"
#include "database/private/Files.h"

#include <QHash>
#include <QSqlDriver>
#include <QThread>

#include <utility>

namespace DataAccess::Database {

namespace {

/// The connections by name, and the lock that every registration and look-up holds.
struct Registry
{
    std::mutex mutex;
    QHash<QString, std::shared_ptr<SharedConnection>> connections;
};

Registry& registry()
{
    // Never destroyed: a database may still end after the static objects of the process.
    static auto* const instance = new Registry;
    return *instance;
}

QSqlError nameInUse()
{
    return {QString(), QStringLiteral("The connection name is in use for another database"), QSqlError::UnknownError};
}

QSqlDatabase addConnection(const QString& name, const SharedConnection::Target& target)
{
    const Backend& backend = Backend::of(target.type);
    QSqlDatabase handle = QSqlDatabase::addDatabase(backend.driver(), name);
    handle.setDatabaseName(target.databaseName);
    handle.setHostName(target.hostName);
    handle.setPort(target.port == 0 ? -1 : static_cast<int>(target.port));
    handle.setUserName(target.userName);
    handle.setPassword(target.password);
    handle.setConnectOptions(backend.connectOptions());
    qCDebug(lcDatabase) << "Added new Connection" << name;
    return handle;
}

} // namespace

bool SharedConnection::Target::operator==(const Target& other) const
{
    return type == other.type && databaseName == other.databaseName && hostName == other.hostName &&
           port == other.port && userName == other.userName && password == other.password;
}

SharedConnection::SharedConnection(const QSqlDatabase& handle, Target target)
    : m_handle(handle)
    , m_target(std::move(target))
{}

std::shared_ptr<SharedConnection> SharedConnection::acquire(Interfaces::IConfig& config)
{
    const QString name = config.ConnectionName();
    const bool isFile = Backend::of(config.Type()).isFile();
    Target target{config.Type(),     isFile ? filePath(config.DatabaseName()) : config.DatabaseName(),
                  config.HostName(), config.Port(),
                  config.UserName(), config.Password()};
    Registry& registered = registry();
    const std::lock_guard<std::mutex> lock(registered.mutex);

    std::shared_ptr<SharedConnection> connection = registered.connections.value(name);
    if (connection && connection->m_users > 0 && !(connection->m_target == target)) {
        qCCritical(lcDatabase) << "Connection name in use for another database:" << name;
        connection = std::make_shared<SharedConnection>(QSqlDatabase(), std::move(target));
        connection->m_openError = nameInUse();
        return connection;
    }
    if (connection && connection->m_users == 0 && connection->abandon(target)) {
        registered.connections.remove(name);
        connection.reset();
    }
    if (connection || QSqlDatabase::contains(name)) {
        if (!connection)
            connection = std::make_shared<SharedConnection>(QSqlDatabase::database(name, false), std::move(target));
        qCDebug(lcDatabase) << "Using existing connection" << name;
    } else {
        const QSqlDatabase handle = addConnection(name, target);
        connection = std::make_shared<SharedConnection>(handle, std::move(target));
    }
    ++connection->m_users;
    registered.connections.insert(name, connection);
    return connection;
}

bool SharedConnection::abandon(const Target& wanted)
{
    const std::lock_guard<std::recursive_mutex> use(m_mutex);
    const bool elsewhere = !(m_target == wanted);
    if (!elsewhere && m_handle.isValid())
        return false;
    const QString name = m_handle.connectionName();
    m_handle = QSqlDatabase();
    if (elsewhere)
        QSqlDatabase::removeDatabase(name);
    return true;
}

void SharedConnection::release(const std::shared_ptr<SharedConnection>& connection)
{
    const std::lock_guard<std::recursive_mutex> use(connection->m_mutex);
    if (--connection->m_users > 0)
        return;
    connection->close();
    connection->moveToThread(nullptr);
}

bool SharedConnection::open()
{
    if (m_handle.isOpen())
        return true;
    moveToThread(QThread::currentThread());
    // Frees what is left of a connection that the server has ended.
    close();
    const Backend& backend = Backend::of(m_target.type);
    m_openError = backend.prepareOpening(m_target.databaseName, m_file);
    if (m_openError.isValid())
        return false;
    if (m_handle.open()) {
        m_openError = backend.probe(m_handle);
    } else {
        const QString silence = QStringLiteral("The database driver refused without a reason");
        m_openError = m_handle.lastError();
        if (!m_openError.isValid())
            m_openError = QSqlError(QString(), silence, QSqlError::ConnectionError);
    }
    if (m_openError.isValid())
        close();
    return !m_openError.isValid();
}

void SharedConnection::close()
{
    m_handle.close();
    m_file.leave();
}

void SharedConnection::closeUnlessShared()
{
    if (m_users <= 1)
        close();
}

QSqlError SharedConnection::lastError() const
{
    return m_openError.isValid() ? m_openError : m_handle.lastError();
}

void SharedConnection::moveToThread(QThread* thread)
{
    QSqlDriver* driver = m_handle.driver();
    if (!m_handle.isValid() || driver->thread() == thread)
        return;
    if (driver->thread() == nullptr && thread != QThread::currentThread())
        driver->moveToThread(QThread::currentThread());
    if (driver->thread() == nullptr || driver->thread() == QThread::currentThread())
        driver->moveToThread(thread);
}

Session::Session(QSqlDatabase& db)
    : m_db(db)
{}

void Session::settleRows()
{
    if (m_rows != nullptr)
        m_rows->settle();
}

void Session::abandonRows() noexcept
{
    if (m_rows != nullptr)
        m_rows->abandon();
}

std::shared_ptr<HeldTransaction> Session::hold()
{
    auto transaction = std::make_shared<HeldTransaction>(HeldTransaction{*this});
    m_transaction = transaction;
    return transaction;
}

bool Session::hasLostTransaction()
{
    const std::shared_ptr<HeldTransaction> transaction = m_transaction.lock();
    if (!transaction)
        return false;
    transaction->isLost = transaction->isLost || !Backend::of(m_db).hasTransaction(m_db);
    return transaction->isLost;
}

} // namespace DataAccess::Database
