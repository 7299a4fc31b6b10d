#pragma once

#include "database/DataAccessExport.h"

#include <QString>
#include <QUuid>
#include <QVector>

namespace DataAccess::Database {

/// Why an operation answered false, empty or null.
struct Failure
{
    /// What is to be made of it.
    enum class Kind {
        Statement,   ///< The database refused a statement or a value.
        NoRow,       ///< A write found no row: another program has removed it.
        Unavailable, ///< The database is locked or out of reach: what follows would fail too, each after its time-out.
    };

    QString reason;              ///< The driver's words, or ours; never a row's values or a password.
    Kind kind = Kind::Statement; ///< What is to be made of it.
    QString table;               ///< Empty unless the failure is that of one table.
    QUuid row;                   ///< Null unless the failure is that of one row.
};

/**
 * Collects the failures of the operations that run on one thread while the watch lives. An operation that answers
 * false, empty or null because something failed reports that; one that found nothing does not. What a job reports on
 * the worker's thread reaches whoever takes the result of its task.
 *
 *     FailureWatch watch;
 *     const auto cables = repository->GetAll();
 *     if (watch.failed())
 *         qWarning() << watch.reason();
 *
 * Watches may be nested: each is told what happens within. Used by one thread, and destroyed in reverse order.
 */
class DATAACCESS_EXPORT FailureWatch
{
public:
    /// Watches the calling thread from now on.
    FailureWatch();
    ~FailureWatch();
    FailureWatch(const FailureWatch&) = delete;
    FailureWatch& operator=(const FailureWatch&) = delete;

    /// Tells all watches of the calling thread; does not log.
    static void report(const Failure& failure);

    /// Whether something has failed since.
    bool failed() const { return !m_failures.isEmpty(); }
    /// Whether trying another statement would only wait in vain.
    bool isUnavailable() const;
    /// The reason of the first failure; empty when there was none.
    QString reason() const;
    /// All failures, the first one first.
    const QVector<Failure>& failures() const { return m_failures; }

private:
    FailureWatch* const m_outer;
    QVector<Failure> m_failures;
};

} // namespace DataAccess::Database
