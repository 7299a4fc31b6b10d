#include "database/backends/sqlite2/SqlTokenizer.h"

#include "database/backends/sqlite2/LegacyFileError.h"
#include "database/backends/sqlite2/LegacyText.h"

#include <cstring>
#include <utility>

namespace DataAccess::Database::Sqlite2 {

namespace {

bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isWordCharacter(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' ||
           static_cast<uchar>(c) >= 0x80;
}

} // namespace

bool SqlToken::isWord(const char* word) const
{
    return kind == Word &&
           LegacyText::sameWord(text, QByteArray::fromRawData(word, static_cast<int>(std::strlen(word))));
}

bool SqlToken::isSymbol(char symbol) const
{
    return kind == Symbol && text.at(0) == symbol;
}

SqlTokenizer::SqlTokenizer(const QByteArray& sql)
    : m_sql(sql)
    , m_next(read())
{}

SqlToken SqlTokenizer::next()
{
    return std::exchange(m_next, m_next.kind == SqlToken::End ? m_next : read());
}

void SqlTokenizer::skipBlanks()
{
    const int size = m_sql.size();
    while (m_position < size) {
        if (isBlank(m_sql.at(m_position))) {
            ++m_position;
            continue;
        }
        const bool isLine = std::strncmp(m_sql.constData() + m_position, "--", 2) == 0;
        const bool isBlock = std::strncmp(m_sql.constData() + m_position, "/*", 2) == 0;
        if (!isLine && !isBlock)
            return;
        const int end = isLine ? m_sql.indexOf('\n', m_position) : m_sql.indexOf("*/", m_position + 2);
        m_position = end < 0 ? size : end + (isLine ? 1 : 2);
    }
}

SqlToken SqlTokenizer::read()
{
    skipBlanks();
    const int begin = m_position;
    if (begin == m_sql.size())
        return {SqlToken::End, {}, begin, begin};
    const char first = m_sql.at(begin);
    if (first == '\'' || first == '"' || first == '[')
        return readQuoted(first == '[' ? ']' : first);
    if (!isWordCharacter(first)) {
        ++m_position;
        return {SqlToken::Symbol, m_sql.mid(begin, 1), begin, m_position};
    }
    while (m_position < m_sql.size() && isWordCharacter(m_sql.at(m_position)))
        ++m_position;
    return {SqlToken::Word, m_sql.mid(begin, m_position - begin), begin, m_position};
}

SqlToken SqlTokenizer::readQuoted(char quote)
{
    const int begin = m_position;
    QByteArray text;
    int from = begin + 1;
    for (;;) {
        const int at = m_sql.indexOf(quote, from);
        if (at < 0)
            throw LegacyFileError(QStringLiteral("it is damaged: a statement of its schema has an open quote"));
        text += m_sql.mid(from, at - from);
        from = at + 1;
        // A quote written twice is part of the text, except in brackets.
        if (quote == ']' || from >= m_sql.size() || m_sql.at(from) != quote)
            break;
        text += quote;
        ++from;
    }
    m_position = from;
    return {SqlToken::Quoted, text, begin, from};
}

} // namespace DataAccess::Database::Sqlite2
