#pragma once

#include "database/sqlite2/SqlTokenizer.h"
#include "database/sqlite2/TableDefinition.h"

#include <initializer_list>

namespace DataAccess::Database::Sqlite2 {

/**
 * Reads a CREATE TABLE statement in the syntax of SQLite 2. Left out of the definition are the names of constraints,
 * which nothing refers to, collations, which SQLite 3 does not know, and CHECK, which SQLite 2 never enforced, so that
 * existing rows may break it.
 */
class TableParser
{
public:
    /// Throws LegacyFileError when @p sql is no such statement.
    static TableDefinition parse(const QByteArray& sql);

private:
    explicit TableParser(const QByteArray& sql);

    void readTable();
    void readColumn();
    void readType(ColumnDefinition& column);
    bool readColumnConstraint(ColumnDefinition& column);
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
    TableDefinition m_table;
    std::vector<QByteArray> m_primaryKey;
};

} // namespace DataAccess::Database::Sqlite2
