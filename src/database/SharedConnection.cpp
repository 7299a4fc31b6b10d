#include "database/SharedConnection.h"

#include "database/IConfig.h"
#include "database/LoggingCategories.h"
#include "database/sqlite2/Sqlite2Driver.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
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

/// What the driver would not open either: no different from a connection that it refuses.
QSqlError refused(const char* text)
{
    return {QString(), QString::fromLatin1(text), QSqlError::ConnectionError};
}

/// What the driver would open. Trying again does not help.
QSqlError unusable(const char* text)
{
    return {QString(), QString::fromLatin1(text), QSqlError::UnknownError};
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
    Target target{config.Type(), config.DatabaseName(), config.HostName(),
                  config.Port(), config.UserName(),     config.Password()};
    Registry& registered = registry();
    const std::lock_guard<std::mutex> lock(registered.mutex);

    std::shared_ptr<SharedConnection> connection = registered.connections.value(name);
    if (connection && connection->m_users > 0 && !(connection->m_target == target)) {
        qCCritical(lcDatabase) << "Connection name in use for another database:" << name;
        return std::make_shared<SharedConnection>(QSqlDatabase(), std::move(target));
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
    if (connection->m_handle.isOpen())
        connection->m_handle.close();
    connection->moveToThread(nullptr);
}

bool SharedConnection::open()
{
    if (m_handle.isOpen())
        return true;
    moveToThread(QThread::currentThread());
    m_openError = fileError();
    if (m_openError.isValid())
        return false;
    // Frees what is left of a connection that the server has ended.
    m_handle.close();
    if (!m_handle.open()) {
        m_openError = m_handle.lastError();
        if (!m_openError.isValid())
            m_openError = refused("The database driver refused without a reason");
        return false;
    }
    m_openError = probe();
    if (m_openError.isValid())
        m_handle.close();
    return !m_openError.isValid();
}

QSqlError SharedConnection::fileError() const
{
    if (m_target.type != Enumerations::SQLite3)
        return {};
    if (m_target.databaseName.isEmpty())
        return unusable("The database file has no name");
    const QFileInfo info(m_target.databaseName);
    if (!info.exists()) {
        if (m_target.databaseName != QLatin1String(":memory:") && !info.absoluteDir().exists())
            return refused("The folder of the database file does not exist");
        return {};
    }
    if (info.isDir())
        return refused("The path is a folder, not a database file");
    if (!info.isFile())
        return unusable("The path is no regular file");
    QFile file(m_target.databaseName);
    if (!file.open(QIODevice::ReadOnly))
        return refused("No permission to read the database file");
    // A file of no bytes is a database that nothing was written to yet.
    const QByteArray start = file.read(48);
    if (start.isEmpty() || start.startsWith(QByteArray("SQLite format 3", 16)))
        return {};
    if (start.startsWith("** This file contains an SQLite 2"))
        return unusable("The file is a database of SQLite 2, not of SQLite 3");
    return unusable("The file is no database");
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
    const QSqlError error = query.lastError();
    return error.isValid() ? error : unusable("The schema of the database cannot be read");
}

void SharedConnection::closeUnlessShared()
{
    if (m_users <= 1 && m_handle.isOpen())
        m_handle.close();
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
