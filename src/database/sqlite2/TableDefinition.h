#pragma once

#include <QByteArray>

#include <vector>

namespace DataAccess::Database::Sqlite2 {

/// A column of a legacy table.
struct ColumnDefinition
{
    QByteArray name;        ///< UTF-8.
    QByteArray type;        ///< As SQLite 2 reports it; empty when none is declared.
    QByteArray constraints; ///< In the syntax of SQLite 3, each with a blank before it.
};

/**
 * A legacy table as its CREATE TABLE statement describes it, and the same table for SQLite 3.
 *
 * In SQLite 2 every value is a text, whatever its column's type. Columns declared INTEGER or REAL stay such in SQLite
 * 3, where a text that is a number becomes one; all others become TEXT, which alone keeps `007` or `1.50` as they are.
 */
struct TableDefinition
{
    QByteArray name; ///< UTF-8.
    std::vector<ColumnDefinition> columns;
    std::vector<QByteArray> clauses; ///< Constraints of the table, in the syntax of SQLite 3.
    int rowIdColumn = -1;            ///< Index of the column whose value is the row id; -1 when there is none.

    /// The statement that makes the table in SQLite 3.
    QByteArray createStatement() const;

    /// @p name as a statement of SQLite 3 holds it.
    static QByteArray quotedName(const QByteArray& name);
    /// @p text as a statement of SQLite 3 holds it.
    static QByteArray quotedText(const QByteArray& text);
};

} // namespace DataAccess::Database::Sqlite2
