#pragma once

#include "database/DatabaseType.h"
#include "database/backends/OpenFile.h"

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

class Session;

/// Rows that a writer has sent ahead: the connection serves nothing else until their answers are taken.
class RowsUnderWay
{
public:
    RowsUnderWay() = default;
    RowsUnderWay(const RowsUnderWay&) = delete;
    RowsUnderWay& operator=(const RowsUnderWay&) = delete;

    /// Takes the answers and says which rows are written. Throws ExecutionException for one that is not.
    virtual void settle() = 0;
    /// Takes the answers and says nothing.
    virtual void abandon() noexcept = 0;

protected:
    ~RowsUnderWay() = default;
};

/// A transaction as its guard and its connection know it; it lives as long as the guard holds it.
struct HeldTransaction
{
    Session& session;
    bool isLost = false;
};

/**
 * What is under way on one connection. It is asked before each statement, since neither Qt's drivers nor the backends
 * keep a statement from running where it must not: among rows sent ahead, or after its transaction was lost. Used by
 * one thread at a time, the one that holds the connection.
 */
class Session
{
public:
    /// @p db is the connection, which must outlive the session.
    explicit Session(QSqlDatabase& db);

    /// Announces rows that are sent ahead; null when their answers are taken.
    void setRows(RowsUnderWay* rows) { m_rows = rows; }
    /// Settles rows that are sent ahead. Throws ExecutionException.
    void settleRows();
    void abandonRows() noexcept;

    /// Takes note of a transaction that has just begun.
    std::shared_ptr<HeldTransaction> hold();
    /// Whether a guard holds a transaction that the backend has ended by itself; remains so while the guard lives.
    bool hasLostTransaction();

private:
    QSqlDatabase& m_db;
    RowsUnderWay* m_rows = nullptr;
    std::weak_ptr<HeldTransaction> m_transaction;
};

/**
 * One connection registered with Qt SQL, and the only place that registers connections and looks them up.
 *
 * Databases of one connection name share it. Qt hands a connection out on the thread of its driver only, and looking up
 * a name on two threads at once can crash; so the handle is kept here, and the driver moves along with its user.
 * The handle is used only while mutex() is held.
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

    /// Opens the connection unless it is open, and makes sure that what was opened can be read as a database.
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
    /// Gives up a registration without users when its handle is one for another database than @p wanted, or invalid as
    /// the application has removed the connection. False when it can be used again.
    bool abandon(const Target& wanted);

    std::recursive_mutex m_mutex;
    QSqlDatabase m_handle;
    Session m_session{m_handle};
    OpenFile m_file;
    Target m_target;
    QSqlError m_openError;
    std::atomic<int> m_users = 0;
};

} // namespace DataAccess::Database
