#pragma once

#include "database/DatabaseType.h"
#include "database/SQLiteFile.h"
#include "database/Session.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QString>

#include <atomic>
#include <memory>
#include <mutex>

class QThread;

namespace DataAccess::Interfaces {
class IConfig;
}

namespace DataAccess::Database {

/**
 * One connection registered with Qt SQL, and the only place that registers connections and looks them up.
 *
 * Databases of one connection name share it. Qt hands a connection out on the thread of its driver only, and looking up
 * a name on two threads at once can crash; so the handle is kept here, and the driver moves along with its user.
 * Whoever uses the handle holds mutex().
 */
class SharedConnection
{
public:
    /// What a connection is a connection to. Two databases share a connection only when these are equal.
    struct Target
    {
        Enumerations::DatabaseType type = Enumerations::None;
        QString databaseName;
        QString hostName;
        quint32 port = 0;
        QString userName;
        QString password;

        bool operator==(const Target& other) const;
    };

    /// The connection of @p config, registered when there is none of its name. Never null; its handle may be invalid.
    /// A name that is in use for another database gives an invalid handle.
    static std::shared_ptr<SharedConnection> acquire(Interfaces::IConfig& config);
    /// Gives up what acquire() returned; closes the connection when nobody else uses it. It stays registered.
    static void release(const std::shared_ptr<SharedConnection>& connection);

    SharedConnection(const QSqlDatabase& handle, Target target);
    SharedConnection(const SharedConnection&) = delete;
    SharedConnection& operator=(const SharedConnection&) = delete;

    std::recursive_mutex& mutex() { return m_mutex; }
    QSqlDatabase& handle() { return m_handle; }
    const QSqlDatabase& handle() const { return m_handle; }
    /// What is under way on the connection.
    Session& session() { return m_session; }

    /// Opens the connection unless it is open. On SQLite also makes sure that the file can be read as a database.
    bool open();
    void close();
    /// Closes the connection unless other databases use it too.
    void closeUnlessShared();
    /// What the last failed open() or statement on the handle said.
    QSqlError lastError() const;
    /// Text of the last failure of open(); empty after a success.
    QString openError() const { return m_openError.text().trimmed(); }

    /// Makes @p thread the home of the driver, if it is at home on the calling thread or nowhere. Null: nowhere.
    void moveToThread(QThread* thread);

private:
    /// Gives up a registration that nobody uses, when its handle leads to another database than @p wanted or nowhere:
    /// the application may have removed the connection. False when it is good.
    bool abandon(const Target& wanted);
    QSqlError probe();

    std::recursive_mutex m_mutex;
    QSqlDatabase m_handle;
    Session m_session{m_handle};
    SQLiteFile m_file;
    Target m_target;
    QSqlError m_openError;
    std::atomic<int> m_users = 0;
};

} // namespace DataAccess::Database
