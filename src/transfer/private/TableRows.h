#pragma once

#include "database/IDatabase.h"
#include "transfer/Progress.h"
#include "transfer/private/StoredValue.h"

#include <QVector>

#include <memory>

namespace DataAccess::Transfer {

/// A row of the current schema.
using Row = QVector<StoredValue>;

/// Writes the lines of a dump that stand for the rows of one table. Equal rows give equal lines.
class DATAACCESS_EXPORT RowLines
{
public:
    /// @p table must outlive this.
    explicit RowLines(const SchemaTable& table);

    /// The line of @p row, with its end; good until the next call.
    const QByteArray& line(const Row& row);

private:
    const SchemaTable& m_table;
    QVector<QByteArray> m_names; // what stands before each value
    QByteArray m_line;
};

/// What a database holds at one moment, whatever others write meanwhile: a transaction that reads. On SQLite others
/// cannot commit while it lives.
class DATAACCESS_EXPORT Snapshot
{
public:
    /// Begins the transaction on @p db, which must outlive it. Throws DbException when that cannot be.
    explicit Snapshot(Interfaces::IDatabase& db);

private:
    Database::Transaction m_transaction;
};

/**
 * The rows of one table in the order of its key, alike on every backend, in memory that does not grow with the table.
 * Used within a Snapshot.
 */
class DATAACCESS_EXPORT TableReader
{
public:
    /// Throws ExecutionException.
    TableReader(Interfaces::IDatabase& db, const SchemaTable& table);
    ~TableReader();
    TableReader(const TableReader&) = delete;
    TableReader& operator=(const TableReader&) = delete;

    /// Moves to the next row; false after the last. Throws ExecutionException, and ContentError for a value that does
    /// not convert, or that SQLite holds as something else than its column says.
    bool next();
    /// The current row; good until the next call of next().
    const Row& row() const { return m_row; }

private:
    void fetch();

    Interfaces::IDatabase& m_db;
    const SchemaTable& m_table;
    std::unique_ptr<Interfaces::IRowReader> m_reader;
    Row m_row;
    bool m_hasCursor = false;
    bool m_tellsForeignTypes; // behind the columns
    int m_fetched = 0;
};

/// Inserts rows into one table, in a transaction of the caller's.
class DATAACCESS_EXPORT TableWriter
{
public:
    /// Both must outlive the writer.
    TableWriter(Interfaces::IDatabase& db, const SchemaTable& table);

    /// Throws ExecutionException for this row or one before it.
    void write(const Row& row);
    /// Waits until all rows are written. Throws ExecutionException.
    void finish();

private:
    const SchemaTable& m_table;
    QStringList m_placeholders;
    std::unique_ptr<Interfaces::IRowWriter> m_writer;
};

/// Number of rows of @p table; 0 when the database has no such table. Throws ExecutionException.
DATAACCESS_EXPORT qint64 rowCount(Interfaces::IDatabase& db, const QString& table);
/// Number of rows of all tables of the schema.
DATAACCESS_EXPORT qint64 rowCount(Interfaces::IDatabase& db);
/// Deletes all rows of the tables of the schema.
DATAACCESS_EXPORT void deleteAllRows(Interfaces::IDatabase& db);
/// The first value of the first row of @p select; a null one when there is no row. Throws ExecutionException.
DATAACCESS_EXPORT QVariant scalar(Interfaces::IDatabase& db, const QString& select);
/// A condition that is true of the rows of @p table where a column holds something else than its kind; empty on
/// backends that do not allow that.
DATAACCESS_EXPORT QString foreignTypeCondition(Interfaces::IDatabase& db, const SchemaTable& table);

} // namespace DataAccess::Transfer
