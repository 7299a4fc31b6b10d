#include "database/Session.h"

#include "database/native/ConnectionState.h"

namespace DataAccess::Database {

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
    transaction->isLost = transaction->isLost || !Native::hasTransaction(m_db);
    return transaction->isLost;
}

} // namespace DataAccess::Database
