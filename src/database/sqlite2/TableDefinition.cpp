#include "database/sqlite2/TableDefinition.h"

#include "database/sqlite2/LegacyText.h"

#include <QByteArrayList>

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

} // namespace

QByteArray TableDefinition::createStatement() const
{
    QByteArrayList parts;
    for (const ColumnDefinition& column : columns)
        parts += quotedName(column.name) + ' ' + newType(column.type) + column.constraints;
    for (const QByteArray& clause : clauses)
        parts += clause;
    return "CREATE TABLE " + quotedName(name) + " ( " + parts.join(", ") + " )";
}

QByteArray TableDefinition::quotedName(const QByteArray& name)
{
    return quoted(name, '"');
}

QByteArray TableDefinition::quotedText(const QByteArray& text)
{
    return quoted(text, '\'');
}

} // namespace DataAccess::Database::Sqlite2
