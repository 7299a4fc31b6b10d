#include "database/Transaction.h"

#include "database/DbException.h"
#include "database/backends/Backend.h"
#include "database/private/SharedConnection.h"
#include "database/private/StatementError.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlQuery>

#include <utility>

namespace DataAccess::Database {

Transaction::Transaction(QSqlDatabase* db)
    : m_db(db)
{
    begin({});
}

Transaction::Transaction(QSqlDatabase& db, Session& session, const QString& statement)
    : m_db(&db)
{
    if (begin(statement))
        m_held = session.hold();
}

Transaction::Transaction(Transaction&& other) noexcept
    : m_db(std::exchange(other.m_db, nullptr))
    , m_held(std::move(other.m_held))
    , m_lastError(other.m_lastError)
    , m_isUnavailable(other.m_isUnavailable)
{}

Transaction& Transaction::operator=(Transaction&& other) noexcept
{
    if (this != &other) {
        m_db = std::exchange(other.m_db, nullptr);
        m_held = std::move(other.m_held);
        m_lastError = other.m_lastError;
        m_isUnavailable = other.m_isUnavailable;
    }
    return *this;
}

Transaction::~Transaction()
{
    if (m_db == nullptr || wasLost())
        return;
    if (m_held)
        m_held->session.abandonRows();
    m_db->rollback();
}

bool Transaction::begin(const QString& statement)
{
    if (m_db == nullptr || !m_db->isValid()) {
        fail(QStringLiteral("The connection is invalid"), true);
    } else if (!Backend::of(*m_db).canBegin(*m_db)) {
        fail(QStringLiteral("A transaction is open already"), false);
    } else if (!statement.isEmpty()) {
        QSqlQuery query(*m_db);
        if (query.exec(statement))
            return true;
        const Exceptions::ExecutionException failure = failureOf(query);
        fail(QString::fromLocal8Bit(failure.what()), failure.isUnavailable());
    } else if (m_db->transaction()) {
        return true;
    } else {
        failByDriver();
    }
    m_db = nullptr;
    return false;
}

bool Transaction::commit()
{
    if (m_db == nullptr || wasLost())
        return refuse();
    try {
        if (m_held)
            m_held->session.settleRows();
    } catch (const Exceptions::DbException& error) {
        return fail(QString::fromLocal8Bit(error.what()), error.isUnavailable());
    }
    if (!m_db->commit())
        return failByDriver();
    close();
    return true;
}

bool Transaction::rollback()
{
    if (!isOpen())
        return refuse();
    if (m_held)
        m_held->session.abandonRows();
    if (!m_db->rollback())
        return failByDriver();
    close();
    return true;
}

void Transaction::close()
{
    m_db = nullptr;
    m_held.reset();
}

/// A guard without a transaction is asked to end it. Keeps the reason why there is none. Gives false.
bool Transaction::refuse()
{
    if (!m_lastError.isEmpty())
        return false;
    return m_held ? fail(QStringLiteral("The database has ended the transaction by itself"), true)
                  : fail(QStringLiteral("No transaction is open"), false);
}

bool Transaction::fail(const QString& reason, bool isUnavailable)
{
    m_lastError = reason;
    m_isUnavailable = isUnavailable;
    return false;
}

bool Transaction::failByDriver()
{
    const QSqlError error = m_db->lastError();
    const QString words = Backend::errorText(error).trimmed();
    return fail(words.isEmpty() ? QStringLiteral("The database refused without a reason") : words,
                Backend::isUnavailable(error) || !m_db->isOpen() || Backend::of(*m_db).metLock(*m_db));
}

bool Transaction::isOpen() const
{
    return m_db != nullptr && !(m_held && m_held->isLost);
}

bool Transaction::wasLost()
{
    const bool isKnown = m_held && m_held->isLost;
    if (!isKnown && (m_db == nullptr || Backend::of(*m_db).hasTransaction(*m_db)))
        return false;
    if (m_held)
        m_held->isLost = true;
    m_db = nullptr;
    return true;
}

} // namespace DataAccess::Database
