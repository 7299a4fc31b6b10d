#pragma once

#include "database/DataAccessExport.h"
#include "database/IConfig.h"
#include "database/IRowReader.h"
#include "database/IRowWriter.h"
#include "database/IValueConverter.h"
#include "database/Transaction.h"

#include <QSqlQuery>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace DataAccess::Interfaces {

/**
 * One connection to a database, with a reusable query. Used by one thread at a time: inside the jobs of its worker.
 *
 * Whatever needs the connection opens it when it is closed. It throws InvalidDbException when the handle is invalid and
 * NotOpenException when the connection cannot be opened.
 */
class DATAACCESS_EXPORT IDatabase
{
public:
    virtual ~IDatabase();
    IDatabase() = default;
    IDatabase(const IDatabase&) = default;
    IDatabase& operator=(const IDatabase&) = default;

    /// Whether the connection is open; opens nothing.
    virtual bool IsOpen() = 0;
    /// Always false.
    virtual bool IsBusy() = 0;
    /// Opens the connection unless it is open; false when that fails. Throws InvalidDbException.
    virtual bool Connect() = 0;
    /// Closes the connection; true when it is closed afterwards. Throws InvalidDbException.
    virtual bool Disconnect() = 0;
    /// Runs a prepared query. Never false: throws ExecutionException with the driver's text.
    virtual bool Exec(QSqlQuery& query) = 0;
    /// Runs one statement; the query returned holds its result, to be walked forwards. Throws ExecutionException.
    virtual QSqlQuery Exec(const QString& sql) = 0;
    /// Runs a prepared query once for each row of its list-valued bindings. Throws ExecutionException.
    virtual bool ExecBatch(QSqlQuery& query) = 0;
    /// Names of the user's tables, without views. Throws ExecutionException when they cannot be read.
    virtual QStringList Tables() = 0;
    virtual std::shared_ptr<IConfig> Config() = 0;
    /// Starts a transaction; the guard is closed when the backend refuses.
    virtual ::DataAccess::Database::Transaction Transaction() = 0;
    /// A converter on Query(); null for a type without one.
    virtual std::shared_ptr<IValueConverter> Converter() = 0;
    /// A converter on @p query, which must outlive it; null for a type without one.
    virtual std::shared_ptr<IValueConverter> Converter(QSqlQuery& query) = 0;
    /// The reusable query, fresh and not prepared. The reference is good until the next call or the end of the job.
    virtual QSqlQuery& Query() = 0;
    /// The next free integer id of @p table. Throws ExecutionException.
    virtual quint64 NextId(const QString& table) = 0;
    /// Makes the sequence that NextId() needs for @p name where the backend has sequences. Throws ExecutionException.
    virtual bool CreateSequence(const QString& name) = 0;
    /// Whether the connection handle is valid; opens nothing.
    virtual bool IsValid() const = 0;
    /// Whether the last failure was one to connect, so that waiting and trying again may help.
    virtual bool WasBlockedByStartup() const = 0;

    /// The worker calls these around each job: databases that share one connection take turns, job by job.
    virtual void BeginJob();
    virtual void EndJob();
    /// Text of the last failure to open the connection; empty when there was none.
    virtual QString OpenError() const;

    /// Query(), prepared with @p statement; it stays so while nothing but the same statement is asked for. Its last
    /// error is valid when @p statement cannot be prepared.
    virtual QSqlQuery& PreparedQuery(const QString& statement);

    /// Runs @p sql, a select, to be read row by row, in the fastest way there is. Throws ExecutionException.
    virtual std::unique_ptr<IRowReader> Read(const QString& sql);
    /// Prepares @p statement, with named placeholders, to be run for many rows, in the fastest way there is. Calls
    /// @p written once for each row written, in order, when no row is under way. Throws ExecutionException when the
    /// statement cannot be prepared; PostgreSQL is asked only with the first rows, which then fail.
    virtual std::unique_ptr<IRowWriter> Write(const QString& statement, std::function<void()> written);

    /// Starts a transaction that will write. On SQLite it has the write lock from the start, so that a write that
    /// follows a read waits for other programs like any other; the default is Transaction().
    virtual ::DataAccess::Database::Transaction WriteTransaction();

    /// Exec() of @p select, which finds the rows that the current transaction is to change: nobody else changes them
    /// before it has ended. Throws ExecutionException.
    QSqlQuery SelectForUpdate(const QString& select);
};

} // namespace DataAccess::Interfaces
