#include "database/backends/sqlite2/TableParser.h"

#include "database/backends/sqlite2/LegacyFileError.h"
#include "database/backends/sqlite2/LegacyText.h"

#include <QByteArrayList>

#include <algorithm>
#include <utility>

namespace DataAccess::Database::Sqlite2 {

namespace {

QByteArray quoted(QByteArray text, char quote)
{
    return quote + text.replace(quote, QByteArray(2, quote)) + quote;
}

QByteArray newType(const QByteArray& legacyType)
{
    for (const QByteArray& number : {QByteArrayLiteral("INTEGER"), QByteArrayLiteral("REAL")}) {
        if (LegacyText::sameWord(legacyType, number))
            return number;
    }
    return QByteArrayLiteral("TEXT");
}

QByteArray quotedList(const std::vector<QByteArray>& names)
{
    QByteArrayList quoted;
    for (const QByteArray& name : names)
        quoted += LegacyTable::quotedName(name);
    return '(' + quoted.join(',') + ')';
}

} // namespace

QByteArray LegacyTable::createStatement() const
{
    QByteArrayList parts;
    for (const LegacyColumn& column : columns)
        parts += quotedName(column.name) + ' ' + newType(column.type) + column.constraints;
    for (const QByteArray& clause : clauses)
        parts += clause;
    return "CREATE TABLE " + quotedName(name) + " ( " + parts.join(", ") + " )";
}

QByteArray LegacyTable::quotedName(const QByteArray& name)
{
    return quoted(name, '"');
}

QByteArray LegacyTable::quotedText(const QByteArray& text)
{
    return quoted(text, '\'');
}

LegacyTable TableParser::parse(const QByteArray& sql)
{
    TableParser parser(sql);
    parser.readTable();
    parser.findRowIdColumn();
    return std::move(parser.m_table);
}

TableParser::TableParser(const QByteArray& sql)
    : m_tokens(sql)
{}

void TableParser::readTable()
{
    expect({"CREATE"});
    expect({"TABLE"});
    m_table.name = name();
    expectSymbol('(');
    do {
        if (!startsClause())
            readColumn();
        // Clauses may follow each other without a comma.
        while (startsClause())
            readClause();
    } while (acceptSymbol(','));
    expectSymbol(')');
    if (m_tokens.peek().kind != SqlToken::End || m_table.columns.empty())
        fail();
}

void TableParser::readColumn()
{
    LegacyColumn column;
    column.name = name();
    readType(column);
    while (readColumnConstraint(column)) {
    }
    m_table.columns.push_back(std::move(column));
}

void TableParser::readType(LegacyColumn& column)
{
    const auto isTypeWord = [this] {
        return m_tokens.peek().kind == SqlToken::Quoted ||
               (m_tokens.peek().kind == SqlToken::Word &&
                !isNext({"CONSTRAINT", "DEFAULT", "NULL", "NOT", "PRIMARY", "UNIQUE", "CHECK", "REFERENCES", "COLLATE",
                         "DEFERRABLE"}));
    };
    QByteArray all;
    while (isTypeWord()) {
        const bool isQuoted = m_tokens.peek().kind == SqlToken::Quoted;
        const QByteArray word = m_tokens.next().text;
        all += isQuoted ? LegacyTable::quotedName(word) : word;
        // Of several words SQLite 2 takes the first for the type, but with a size it takes them all.
        if (column.type.isEmpty())
            column.type = all;
    }
    if (all.isEmpty() || !acceptSymbol('('))
        return;
    all += '(';
    while (m_tokens.peek().kind == SqlToken::Word || isNext({"+", "-", ",", "."}))
        all += m_tokens.next().text;
    expectSymbol(')');
    column.type = all + ')';
}

bool TableParser::readColumnConstraint(LegacyColumn& column)
{
    if (accept("CONSTRAINT") || accept("COLLATE")) {
        name();
    } else if (accept("NOT")) {
        if (accept("NULL"))
            column.constraints += " NOT NULL" + conflict();
        else
            column.constraints += deferral(" NOT");
    } else if (accept("NULL")) {
        conflict();
    } else if (accept("DEFAULT")) {
        column.constraints += " DEFAULT " + defaultValue();
    } else if (accept("PRIMARY")) {
        expect({"KEY"});
        // A descending key would not be the row id in SQLite 3, as it is here.
        if (isNext({"ASC", "DESC"}))
            m_tokens.next();
        setPrimaryKey({column.name});
        column.constraints += " PRIMARY KEY" + conflict();
    } else if (accept("UNIQUE")) {
        column.constraints += " UNIQUE" + conflict();
    } else if (accept("CHECK")) {
        skipBrackets();
        conflict();
    } else if (isNext({"REFERENCES"})) {
        column.constraints += reference();
    } else if (isNext({"DEFERRABLE"})) {
        column.constraints += deferral("");
    } else {
        return false;
    }
    return true;
}

bool TableParser::startsClause() const
{
    return isNext({"CONSTRAINT", "PRIMARY", "UNIQUE", "CHECK", "FOREIGN"});
}

void TableParser::readClause()
{
    if (accept("CONSTRAINT")) {
        name();
    } else if (accept("PRIMARY")) {
        expect({"KEY"});
        const std::vector<QByteArray> columns = nameList();
        setPrimaryKey(columns);
        m_table.clauses.push_back("PRIMARY KEY" + quotedList(columns) + conflict());
    } else if (accept("UNIQUE")) {
        const QByteArray columns = quotedList(nameList());
        m_table.clauses.push_back("UNIQUE" + columns + conflict());
    } else if (accept("CHECK")) {
        // An expression without brackets ends where the clause does.
        while (!startsClause() && !isNext({",", ")"}))
            skipBrackets();
    } else {
        expect({"FOREIGN"});
        expect({"KEY"});
        QByteArray clause = "FOREIGN KEY" + quotedList(nameList());
        clause += reference();
        const QByteArray prefix = accept("NOT") ? QByteArrayLiteral(" NOT") : QByteArray();
        if (!prefix.isEmpty() || isNext({"DEFERRABLE"}))
            clause += deferral(prefix);
        m_table.clauses.push_back(clause);
    }
}

void TableParser::findRowIdColumn()
{
    if (m_primaryKey.size() != 1)
        return;
    const auto column =
        std::find_if(m_table.columns.begin(), m_table.columns.end(), [this](const LegacyColumn& candidate) {
            return LegacyText::sameWord(candidate.name, m_primaryKey.front());
        });
    if (column == m_table.columns.end())
        fail();
    if (LegacyText::sameWord(column->type, "INTEGER"))
        m_table.rowIdColumn = static_cast<int>(column - m_table.columns.begin());
}

QByteArray TableParser::name()
{
    if (m_tokens.peek().kind != SqlToken::Word && m_tokens.peek().kind != SqlToken::Quoted)
        fail();
    return LegacyText::toUtf8(m_tokens.next().text);
}

std::vector<QByteArray> TableParser::nameList()
{
    std::vector<QByteArray> names;
    expectSymbol('(');
    do {
        names.push_back(name());
        if (isNext({"ASC", "DESC"}))
            m_tokens.next();
    } while (acceptSymbol(','));
    expectSymbol(')');
    return names;
}

QByteArray TableParser::defaultValue()
{
    if (isNext({"NULL"})) {
        m_tokens.next();
        return QByteArrayLiteral("NULL");
    }
    // SQLite 2 stores the mere word, but its author meant the time, which the copy gives from now on.
    if (isNext({"CURRENT_TIMESTAMP", "CURRENT_DATE", "CURRENT_TIME"}))
        return m_tokens.next().text;
    if (m_tokens.peek().kind == SqlToken::Quoted)
        return LegacyTable::quotedText(LegacyText::toUtf8(m_tokens.next().text));

    QByteArray value;
    if (isNext({"-", "+"})) {
        const QByteArray sign = m_tokens.next().text;
        if (sign == "-")
            value = sign;
    }
    if (m_tokens.peek().kind != SqlToken::Word && !isNext({"."}))
        fail();
    // A number is one word, or several parts without a blank between them: 0 . 5 or 1e - 7.
    SqlToken part;
    do {
        part = m_tokens.next();
        value += part.text;
    } while (m_tokens.peek().begin == part.end && (m_tokens.peek().kind == SqlToken::Word || isNext({".", "+", "-"})));
    return LegacyTable::quotedText(LegacyText::toUtf8(value));
}

QByteArray TableParser::conflict()
{
    if (!accept("ON"))
        return {};
    expect({"CONFLICT"});
    return " ON CONFLICT " + expect({"ROLLBACK", "ABORT", "FAIL", "IGNORE", "REPLACE"});
}

QByteArray TableParser::reference()
{
    expect({"REFERENCES"});
    QByteArray text = " REFERENCES " + LegacyTable::quotedName(name());
    if (m_tokens.peek().isSymbol('('))
        text += quotedList(nameList());
    for (;;) {
        if (accept("MATCH")) {
            name();
        } else if (accept("ON")) {
            const QByteArray event = expect({"DELETE", "UPDATE", "INSERT"});
            QByteArray action = expect({"SET", "CASCADE", "RESTRICT"});
            if (action == "SET")
                action += ' ' + expect({"NULL", "DEFAULT"});
            if (event != "INSERT")
                text += " ON " + event + ' ' + action;
        } else {
            return text;
        }
    }
}

QByteArray TableParser::deferral(const char* prefix)
{
    QByteArray text = prefix + (' ' + expect({"DEFERRABLE"}));
    if (accept("INITIALLY"))
        text += " INITIALLY " + expect({"DEFERRED", "IMMEDIATE"});
    return text;
}

void TableParser::skipBrackets()
{
    int depth = 0;
    do {
        const SqlToken token = m_tokens.next();
        if (token.kind == SqlToken::End)
            fail();
        depth += token.isSymbol('(') ? 1 : token.isSymbol(')') ? -1 : 0;
    } while (depth > 0);
}

void TableParser::setPrimaryKey(std::vector<QByteArray> columns)
{
    if (!m_primaryKey.empty())
        fail();
    m_primaryKey = std::move(columns);
}

bool TableParser::isNext(std::initializer_list<const char*> words) const
{
    const SqlToken& token = m_tokens.peek();
    return std::any_of(words.begin(), words.end(),
                       [&token](const char* word) { return token.isWord(word) || token.isSymbol(word[0]); });
}

bool TableParser::accept(const char* word)
{
    const bool found = m_tokens.peek().isWord(word);
    if (found)
        m_tokens.next();
    return found;
}

bool TableParser::acceptSymbol(char symbol)
{
    const bool found = m_tokens.peek().isSymbol(symbol);
    if (found)
        m_tokens.next();
    return found;
}

QByteArray TableParser::expect(std::initializer_list<const char*> words)
{
    if (m_tokens.peek().kind != SqlToken::Word || !isNext(words))
        fail();
    return m_tokens.next().text.toUpper();
}

void TableParser::expectSymbol(char symbol)
{
    if (!acceptSymbol(symbol))
        fail();
}

void TableParser::fail()
{
    throw LegacyFileError(QStringLiteral("it is damaged: the statement of a table can't be understood"));
}

} // namespace DataAccess::Database::Sqlite2
