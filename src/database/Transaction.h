#pragma once

#include "database/DataAccessExport.h"

#include <QString>

#include <memory>

class QSqlDatabase;

namespace DataAccess::Database {

class Session;
struct HeldTransaction;

/**
 * A transaction of one connection, rolled back when the guard ends while it is open. Used on the worker thread only.
 * Nothing here throws or logs.
 */
class DATAACCESS_EXPORT Transaction
{
public:
    /// Starts a transaction on @p db, which must outlive the guard. The guard is closed when that fails, and when one
    /// is open on the connection already. On SQLite the write lock is taken by the first write, not here.
    explicit Transaction(QSqlDatabase* db);
    Transaction(Transaction&& other) noexcept;
    /// Takes over @p other. A transaction that this guard still held is left to the connection.
    Transaction& operator=(Transaction&& other) noexcept;
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction();

    /// Commits. False when the guard is closed, or when the commit failed: then the guard stays open.
    bool commit();
    /// Rolls back. False when the guard is closed, or when that failed: then the guard stays open.
    bool rollback();
    bool isOpen() const;

    /**
     * Whether the backend has ended the transaction by itself, as SQLite does after an input/output error or on a full
     * disk, and a server that ends the connection. The guard is closed then, and as long as it lives the statements of
     * its IDatabase throw: they would stay, as one half of what was to be done. To be asked after a failed statement.
     */
    bool wasLost();

    /// Why the last begin, commit or rollback failed, in the driver's words; never empty after a failure. A guard that
    /// could not be opened keeps the reason for that.
    QString lastError() const { return m_lastError; }
    /// Whether that was because the database is locked or out of reach.
    bool isUnavailable() const { return m_isUnavailable; }

private:
    friend class Database;

    /// Starts a transaction that @p session knows of: with @p statement, or as the driver does when that is empty.
    Transaction(QSqlDatabase& db, Session& session, const QString& statement);
    bool begin(const QString& statement);
    bool refuse();
    bool fail(const QString& reason, bool isUnavailable);
    bool failByDriver();
    void close();

    QSqlDatabase* m_db; // null: closed
    std::shared_ptr<HeldTransaction> m_held;
    QString m_lastError;
    bool m_isUnavailable = false;
};

} // namespace DataAccess::Database
