#include "database/Transaction.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>

#include <utility>

namespace DataAccess::Database {

Transaction::Transaction(QSqlDatabase* db)
    : m_db(db)
{
    if (m_db != nullptr && m_db->isValid() && m_db->transaction())
        return;
    fail();
    m_db = nullptr;
}

Transaction::Transaction(Transaction&& other) noexcept
    : m_db(std::exchange(other.m_db, nullptr))
    , m_lastError(other.m_lastError)
{}

Transaction& Transaction::operator=(Transaction&& other) noexcept
{
    if (this != &other) {
        m_db = std::exchange(other.m_db, nullptr);
        m_lastError = other.m_lastError;
    }
    return *this;
}

Transaction::~Transaction()
{
    if (m_db != nullptr)
        m_db->rollback();
}

bool Transaction::commit()
{
    if (m_db == nullptr || !m_db->commit())
        return fail();
    m_db = nullptr;
    return true;
}

bool Transaction::rollback()
{
    if (m_db == nullptr || !m_db->rollback())
        return fail();
    m_db = nullptr;
    return true;
}

/// Keeps the reason of a failure. Gives false.
bool Transaction::fail()
{
    if (m_db != nullptr)
        m_lastError = m_db->lastError().text().trimmed();
    if (m_lastError.isEmpty())
        m_lastError = QStringLiteral("No transaction is open");
    return false;
}

bool Transaction::isOpen() const
{
    return m_db != nullptr;
}

bool Transaction::wasLost()
{
    if (m_db == nullptr)
        return false;
    // PostgreSQL keeps a failed transaction until it is rolled back, but it ends with the connection; what follows
    // would go over a new one.
    if (m_db->isOpen()) {
        // SQLite has no nested transactions: one can be started only when the old one is gone.
        if (m_db->driver()->dbmsType() != QSqlDriver::SQLite || !m_db->transaction())
            return false;
        m_db->rollback();
    }
    m_db = nullptr;
    return true;
}

} // namespace DataAccess::Database
