#pragma once

#include <memory>

class QSqlDatabase;

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
 * What is under way on one connection. All who send statements look here before, since neither Qt's drivers nor the
 * backends keep a statement from running where it must not: among rows sent ahead, or after its transaction was lost.
 * Used by whoever has the connection.
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

} // namespace DataAccess::Database
