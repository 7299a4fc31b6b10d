#pragma once

#include "database/DataAccessExport.h"
#include "database/DataType.h"
#include "database/DatabaseType.h"

#include <QSqlError>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

class QSqlDatabase;
class QSqlDriver;
class QSqlQuery;

namespace DataAccess::Interfaces {
class IDatabase;
class IRowReader;
class IRowWriter;
class IValueConverter;
} // namespace DataAccess::Interfaces

namespace DataAccess::Database {

class OpenFile;
class SchemaDialect;
class Session;

/**
 * One kind of database, and all that sets it apart from the others: nobody else asks for the type of a database. A new
 * kind is a folder with a class derived from this one, its name in the list of CMakeLists.txt, and a DatabaseType.
 *
 * The objects have no state and live as long as the process; any thread may ask them. What is not overridden suits a
 * driver of which nothing is known.
 */
class DATAACCESS_EXPORT Backend
{
public:
    /// The backend of @p type; for a type without one, one that opens and converts nothing.
    static const Backend& of(Enumerations::DatabaseType type);
    /// The backend that the configuration of @p db names.
    static const Backend& of(Interfaces::IDatabase& db);
    /// The backend behind the driver of @p connection, whoever has made it.
    static const Backend& of(const QSqlDatabase& connection);
    /// What may be logged and reported of @p error: the driver's words, without the values of rows.
    static QString errorText(const QSqlError& error);
    /// Whether @p error says that the database is locked or out of reach, whichever backend it is of.
    static bool isUnavailable(const QSqlError& error);

    virtual ~Backend();
    Backend(const Backend&) = delete;
    Backend& operator=(const Backend&) = delete;

    Enumerations::DatabaseType type() const { return m_type; }
    /// The name of the driver of Qt SQL, which the operation makes known to Qt when the driver is our own.
    virtual QString driver() const { return {}; }
    /// Whether a database is a file, which its name leads to.
    virtual bool isFile() const { return false; }
    /// Whether a database lies on a server, which has to be named too, and may be starting up.
    virtual bool isServer() const { return false; }

    /// Options for QSqlDatabase::setConnectOptions().
    virtual QString connectOptions() const { return {}; }
    /// Options for a connection that only reads, where the driver has such.
    virtual QString readOnlyOptions() const { return {}; }
    /// Why the database called @p name cannot be opened, as far as can be told before that; otherwise not valid, and
    /// @p file is what stays open as long as the connection.
    virtual QSqlError prepareOpening(const QString& /*name*/, OpenFile& /*file*/) const { return {}; }
    /// Why @p connection, just opened, cannot be used; not valid when it can.
    virtual QSqlError probe(const QSqlDatabase& /*connection*/) const { return {}; }
    /// Whether @p error is that of a database that may accept connections in a moment.
    virtual bool mayComeUp(const QSqlError& error) const { return error.type() == QSqlError::ConnectionError; }

    /// Whether a transaction is open on @p connection.
    virtual bool hasTransaction(QSqlDatabase& connection) const;
    /// False when a transaction is open where the backend would only warn of another BEGIN.
    virtual bool canBegin(const QSqlDatabase& /*connection*/) const { return true; }
    /// Whether the last call on @p connection met a lock of another program, as far as can be told.
    virtual bool metLock(const QSqlDatabase& /*connection*/) const { return false; }
    /// Why the server has ended @p connection, open and without a transaction, since the last statement; empty when it
    /// has not. Takes one system call.
    virtual QString endWhileIdle(const QSqlDatabase& /*connection*/) const { return {}; }

    /// A converter on @p query, which must outlive it.
    virtual std::shared_ptr<Interfaces::IValueConverter> converter(QSqlQuery& query) const;
    /// Runs @p select on the open connection of @p driver, and reads its rows from the backend's own interface; null
    /// when that cannot be done. Throws ExecutionException.
    virtual std::unique_ptr<Interfaces::IRowReader> reader(const QSqlDriver& driver, const QString& select) const;
    /**
     * Runs @p statement for many rows through the backend's own interface, on the connection of @p query, which the
     * operation may prepare; null when that cannot be done. Calls @p written after each row. @p session is told of rows
     * sent ahead, and @p makeReady is called before rows outside a transaction: it throws when none may be written.
     * Throws ExecutionException.
     */
    virtual std::unique_ptr<Interfaces::IRowWriter> writer(QSqlQuery& query, const QString& statement,
                                                           const std::function<void()>& written, Session& session,
                                                           const std::function<void()>& makeReady) const;
    /// Whether a result of the driver, read forwards only, outlives the next statement and tells of its failures at
    /// once.
    virtual bool readsForwards() const { return true; }
    /// Lets the connection keep more of the database in memory. Gives the statement that takes that back; empty when
    /// nothing was changed. Throws DbException.
    virtual QString enlargeCache(Interfaces::IDatabase& /*db*/) const { return {}; }

    /// Statement that begins a transaction with the lock of a writer; empty where the driver's own begin does.
    virtual QString writeBegin() const { return {}; }
    /// Statement that counts the user's tables; empty when they cannot be counted.
    virtual QString tableCount() const { return {}; }
    /// Statement that gives the next free id of the table %1.
    virtual QString nextId() const { return {}; }
    /// Statement that makes the sequence of the table %1; empty where there are none.
    virtual QString sequenceCreation() const { return {}; }
    /// @p select so that nobody else changes the rows it finds before the transaction, one that writes, has ended.
    virtual QString selectForUpdate(const QString& select) const { return select; }
    /// The place of the text @p part within the text @p whole, beginning with 1; 0 when it is not there.
    virtual QString position(const QString& part, const QString& whole) const;
    /// Whether a column takes values of all kinds, and has times as the texts that were written.
    virtual bool hasLooseColumns() const { return false; }

    /// What is put behind a text so that it is compared by its bytes.
    virtual QString byteOrder() const { return {}; }
    /// What is put behind a term of ORDER BY so that NULL comes first.
    virtual QString nullsFirst() const { return {}; }
    /// Statement that makes the transaction just begun read one state of the database; empty where any does.
    virtual QString snapshot() const { return {}; }
    /// What is put before a select to get its rows in parts, from the cursor called %1, as results are held whole in
    /// memory; empty where they are not.
    virtual QString cursorDeclaration() const { return {}; }
    /// A condition that the column %1, a truth value, is true.
    virtual QString isTrue() const { return {}; }
    /// Select of the columns of the table %1: each one's name, its type in capitals, and whether the primary key has
    /// it.
    virtual QString columnSearch() const { return {}; }
    /// How that spells the type of a column of @p kind; the sizes of integers are those of their tables.
    virtual QStringList columnTypes(Enumerations::DataType /*kind*/) const { return {}; }
    /// Select of the last of the times in the column "timestamp" of the table %1, as a text.
    virtual QString lastTime() const { return {}; }
    /// Statement for a connection that will read or write most of the database; empty when there is nothing to set.
    virtual QString bulkSettings() const { return {}; }
    /// Whether a database that could not be opened, for @p reason, may be opened later without anybody's doing.
    virtual bool mayPass(const QString& /*reason*/) const { return false; }
    /// What sets the backend apart in a migration. Throws ExecutionException for a type that has no backend.
    virtual const SchemaDialect& schemaDialect() const;
    /// Whether an earlier state of the database stays by itself when it is migrated.
    virtual bool keepsOriginal() const { return false; }

protected:
    explicit Backend(Enumerations::DatabaseType type)
        : m_type(type)
    {}

    /// Whether @p driver, however it was made, is one for this backend.
    virtual bool drives(const QSqlDriver& /*driver*/) const { return false; }
    /// The text of @p error without the values of rows, if it is an error of this backend and may have any; else null.
    virtual QString textWithoutValues(const QSqlError& /*error*/) const { return {}; }
    /// Whether @p error, which has a code, is this backend's for a database that is locked or out of reach.
    virtual bool tellsUnavailable(const QSqlError& /*error*/) const { return false; }

private:
    /// All backends; generated from the list in CMakeLists.txt.
    static const std::vector<const Backend*>& all();

    const Enumerations::DatabaseType m_type;
};

} // namespace DataAccess::Database
