#pragma once

#include "database/DataAccessExport.h"

#include <QString>

class QSqlDatabase;

namespace DataAccess::Database {

/**
 * A transaction of one connection, rolled back when the guard ends while it is open. Used on the worker thread only.
 * Nothing here throws or logs. On SQLite the write lock is taken by the first write, not here.
 */
class DATAACCESS_EXPORT Transaction
{
public:
    /// Starts a transaction on @p db, which must outlive the guard. The guard is closed when that fails.
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
     * disk, and a server that ends the connection; what is written after that would stay. The guard is closed then. To
     * be asked right after a failed statement.
     */
    bool wasLost();

    /// Why the last begin, commit or rollback failed, in the driver's words; never empty after a failure. A guard that
    /// could not be opened keeps the reason for that.
    QString lastError() const { return m_lastError; }

private:
    bool fail();

    QSqlDatabase* m_db;
    QString m_lastError;
};

} // namespace DataAccess::Database
