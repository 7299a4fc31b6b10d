#include "database/Operation.h"

#include "database/DbException.h"
#include "database/IDatabase.h"
#include "database/LoggingCategories.h"

namespace DataAccess::Database {

using Exceptions::DbException;
using Interfaces::IDatabase;

namespace {

/// The kind of what @p failure tells of: an exception, a transaction or a reader of rows.
template <typename T>
Failure::Kind kindOf(const T& failure)
{
    return failure.isUnavailable() ? Failure::Kind::Unavailable : Failure::Kind::Statement;
}

/// What the driver said: of a connection that cannot be opened, only the connection knows that.
QString reasonOf(IDatabase& db, const DbException& error)
{
    const QString reason = QString::fromLocal8Bit(error.what());
    const QString cause = error.type() == Enumerations::NotOpen ? db.OpenError() : QString();
    return cause.isEmpty() || reason.contains(cause) ? reason : reason + QLatin1String(": ") + cause;
}

} // namespace

Operation::Operation(const char* function, const QString& table, QtMsgType severity)
    : m_function(function)
    , m_table(table)
    , m_severity(severity)
{}

void Operation::failed(IDatabase& db, const DbException& error, const QUuid& row) const
{
    tell(failure(kindOf(error), reasonOf(db, error), row));
}

void Operation::failed(Failure::Kind kind, const QString& reason, const QUuid& row) const
{
    tell(failure(kind, reason, row));
}

void Operation::commitFailed(const Transaction& transaction) const
{
    failed(kindOf(transaction), transaction.lastError());
}

void Operation::readFailed(const Interfaces::IRowReader& reader) const
{
    failed(kindOf(reader), reader.error());
}

void Operation::selectFailed(IDatabase& db, const DbException& error) const
{
    FailureWatch::report(failure(kindOf(error), reasonOf(db, error), QUuid()));
}

void Operation::foundNoRow(const QUuid& id) const
{
    failed(Failure::Kind::NoRow, QStringLiteral("There is no such row"), id);
}

Failure Operation::failure(Failure::Kind kind, const QString& reason, const QUuid& row) const
{
    const QString place = row.isNull() ? QStringLiteral(" (table %1)").arg(m_table)
                                       : QStringLiteral(" (table %1, row %2)").arg(m_table, row.toString());
    return {reason + place, kind, m_table, row};
}

void Operation::tell(const Failure& failure) const
{
    const QByteArray reason = failure.reason.toUtf8();
    if (m_severity == QtCriticalMsg && failure.kind != Failure::Kind::NoRow)
        qCCritical(lcDatabase) << m_function << reason.constData();
    else
        qCWarning(lcDatabase) << m_function << reason.constData();
    FailureWatch::report(failure);
}

} // namespace DataAccess::Database
