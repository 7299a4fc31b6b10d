#include "database/SharedConnection.h"

#include "database/FilePath.h"
#include "database/IConfig.h"
#include "database/LoggingCategories.h"
#include "database/sqlite2/Sqlite2Driver.h"
#include "database/sqlite2/WorkingCopy.h"

#include <QHash>
#include <QSqlDriver>
#include <QSqlQuery>
#include <QThread>

#include <utility>

namespace DataAccess::Database {

using Enumerations::DatabaseType;

namespace {

QString driverName(DatabaseType type)
{
    switch (type) {
    case Enumerations::SQLite2:
        return QStringLiteral("QSQLITE2");
    case Enumerations::SQLite3:
        return QStringLiteral("QSQLITE");
    case Enumerations::Postgres:
        return QStringLiteral("QPSQL");
    default:
        return QString();
    }
}

/// What the driver is to open.
QString databaseName(Interfaces::IConfig& config)
{
    const bool isFile = config.Type() == Enumerations::SQLite2 || config.Type() == Enumerations::SQLite3;
    return isFile ? filePath(config.DatabaseName()) : config.DatabaseName();
}

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
    if (target.type == Enumerations::SQLite2)
        Sqlite2::Sqlite2Driver::registerDriver();
    QSqlDatabase handle = QSqlDatabase::addDatabase(driverName(target.type), name);
    handle.setDatabaseName(target.databaseName);
    handle.setHostName(target.hostName);
    handle.setPort(target.port == 0 ? -1 : static_cast<int>(target.port));
    handle.setUserName(target.userName);
    handle.setPassword(target.password);
    // A server that does not answer must not block the worker for the minutes that TCP would wait.
    if (target.type == Enumerations::Postgres)
        handle.setConnectOptions(QStringLiteral("connect_timeout=5"));
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
    Target target{config.Type(), databaseName(config), config.HostName(),
                  config.Port(), config.UserName(),    config.Password()};
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
    m_openError = m_target.type == Enumerations::SQLite3 ? m_file.enter(m_target.databaseName) : QSqlError();
    if (m_openError.isValid())
        return false;
    if (m_target.type == Enumerations::SQLite2)
        m_file.hold(Sqlite2::WorkingCopy(m_target.databaseName).path());
    if (m_handle.open()) {
        m_openError = probe();
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

QSqlError SharedConnection::probe()
{
    if (m_target.type != Enumerations::SQLite3)
        return {};
    QSqlQuery query(m_handle);
    query.setForwardOnly(true);
    // SQLite opens anything; only reading the schema tells a damaged, truncated or locked file.
    if (query.exec(QStringLiteral("SELECT count(*) FROM sqlite_master")) && query.next())
        return {};
    const QString silence = QStringLiteral("The schema of the database cannot be read");
    const QSqlError error = query.lastError();
    return error.isValid() ? error : QSqlError(QString(), silence, QSqlError::StatementError);
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

} // namespace DataAccess::Database
