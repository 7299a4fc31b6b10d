#pragma once

#include <QByteArray>

namespace DataAccess::Database::Sqlite2 {

/// A word, quoted text or character of a statement.
struct SqlToken
{
    enum Kind {
        End,
        Word,   ///< Letters, digits and underscores, not quoted: a keyword, a name or a number.
        Quoted, ///< In quotes or brackets: a name or a text.
        Symbol  ///< A single character.
    };

    Kind kind = End;
    QByteArray text; ///< Without the quotes.
    int begin = 0;   ///< Where it stands in the statement.
    int end = 0;

    bool isWord(const char* word) const;
    bool isSymbol(char symbol) const;
};

/// Takes a statement in the syntax of SQLite 2 apart, leaving out blanks and comments.
class SqlTokenizer
{
public:
    /// @p sql must outlive the tokenizer. Throws LegacyFileError, as next() does, when a quote is not closed.
    explicit SqlTokenizer(const QByteArray& sql);

    /// The token that next() will return.
    const SqlToken& peek() const { return m_next; }
    /// The next token; after the last one, always a token of the kind End.
    SqlToken next();

private:
    SqlToken read();
    void skipBlanks();
    SqlToken readQuoted(char quote);

    const QByteArray& m_sql;
    int m_position = 0;
    SqlToken m_next;
};

} // namespace DataAccess::Database::Sqlite2
