#pragma once

#include "database/backends/sqlite2/SqlTokenizer.h"

#include <QByteArray>

#include <initializer_list>
#include <vector>

namespace DataAccess::Database::Sqlite2 {

/// A column of a legacy table.
struct LegacyColumn
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
struct LegacyTable
{
    QByteArray name; ///< UTF-8.
    std::vector<LegacyColumn> columns;
    std::vector<QByteArray> clauses; ///< Constraints of the table, in the syntax of SQLite 3.
    int rowIdColumn = -1;            ///< Index of the column whose value is the row id; -1 when there is none.

    /// The statement that makes the table in SQLite 3.
    QByteArray createStatement() const;

    /// @p name as a statement of SQLite 3 holds it.
    static QByteArray quotedName(const QByteArray& name);
    /// @p text as a statement of SQLite 3 holds it.
    static QByteArray quotedText(const QByteArray& text);
};

/**
 * Reads a CREATE TABLE statement in the syntax of SQLite 2. Left out of the definition are the names of constraints,
 * which nothing refers to, collations, which SQLite 3 does not know, and CHECK, which SQLite 2 never enforced, so that
 * existing rows may break it.
 */
class TableParser
{
public:
    /// Throws LegacyFileError when @p sql is no such statement.
    static LegacyTable parse(const QByteArray& sql);

private:
    explicit TableParser(const QByteArray& sql);

    void readTable();
    void readColumn();
    void readType(LegacyColumn& column);
    bool readColumnConstraint(LegacyColumn& column);
    bool startsClause() const;
    void readClause();
    void findRowIdColumn();

    QByteArray name();
    std::vector<QByteArray> nameList();
    QByteArray defaultValue();
    QByteArray conflict();
    QByteArray reference();
    QByteArray deferral(const char* prefix);
    /// One token, and if that opens a bracket, all to the bracket that closes it.
    void skipBrackets();
    void setPrimaryKey(std::vector<QByteArray> columns);

    bool isNext(std::initializer_list<const char*> words) const;
    bool accept(const char* word);
    bool acceptSymbol(char symbol);
    QByteArray expect(std::initializer_list<const char*> words);
    void expectSymbol(char symbol);
    [[noreturn]] static void fail();

    SqlTokenizer m_tokens;
    LegacyTable m_table;
    std::vector<QByteArray> m_primaryKey;
};

} // namespace DataAccess::Database::Sqlite2
