#include "migration/IdExpressions.h"

#include <QRegularExpression>
#include <QStringList>

namespace DataAccess::Manager {

namespace {

/// @p digit repeated as an id has digits, with the dashes between.
QString digits(const QString& digit)
{
    QStringList groups;
    for (const int size : {8, 4, 4, 4, 12})
        groups.append(digit.repeated(size));
    return groups.join(QLatin1Char('-'));
}

/// The same as a regular expression.
QString digitsExpression(const QString& digit)
{
    return QStringLiteral("%1{8}-%1{4}-%1{4}-%1{4}-%1{12}").arg(digit);
}

const QString s_anyDigit = QStringLiteral("[0-9A-Fa-f]");

} // namespace

QString IdExpressions::isOdd(const QString& column) const
{
    // What every id in the one spelling passes comes first, and is cheap: no sets of characters, no locale.
    if (m_isPostgres)
        return QStringLiteral("((%1 <> lower(%1 COLLATE \"C\") OR octet_length(%1) <> 38 OR %1 NOT LIKE '{%}') AND "
                              "%1 ~ '^[{]?%2[}[:space:]]*$')")
            .replace(QStringLiteral("%1"), column)
            .replace(QStringLiteral("%2"), digitsExpression(s_anyDigit));
    return QStringLiteral("((%1 <> lower(%1) OR %1 NOT GLOB '{%2}') AND substr(%1, 1 + (%1 GLOB '{*'), 36) GLOB '%3' "
                          "AND rtrim(substr(%1, 37 + (%1 GLOB '{*')), '} ' || char(9, 10, 13)) = '')")
        .arg(column, digits(QStringLiteral("?")), digits(s_anyDigit));
}

QString IdExpressions::canonical(const QString& column) const
{
    const QString bare = m_isPostgres ? QStringLiteral("substring(%1 from '[0-9A-Fa-f-]{36}')")
                                      : QStringLiteral("substr(%1, 1 + (%1 GLOB '{*'), 36)");
    return QStringLiteral("('{' || lower(%1) || '}')").arg(bare.arg(column));
}

QString IdExpressions::unlessFarBehind(const QString& table, const QString& content, const QString& condition) const
{
    if (m_isPostgres || content.isEmpty())
        return condition;
    // The length of a blob stands at the beginning of its row.
    return QStringLiteral("CASE WHEN typeof(%1) = 'blob' AND length(%1) > 4000 AND "
                          "(SELECT sum(length(%1)) FROM %2) > 33554432 THEN 0 ELSE %3 END")
        .arg(content, table, condition);
}

QString IdExpressions::mayBeOddList(const QString& column)
{
    // Four dashes for each 38 characters, besides the marks between the ids.
    return QStringLiteral("(%1 <> lower(%1) OR %1 LIKE '% %' OR 4 * length(replace(%1, '#', '')) <> "
                          "38 * (length(%1) - length(replace(%1, '-', ''))))")
        .replace(QStringLiteral("%1"), column);
}

QString IdExpressions::canonicalList(const QString& list, const QSet<QUuid>& exempt)
{
    static const QRegularExpression id(QStringLiteral("^[{]?%1[}\\s]*$").arg(digitsExpression(s_anyDigit)));
    QStringList parts = list.split(QLatin1Char('#'));
    for (QString& part : parts) {
        if (id.match(part).hasMatch() && !exempt.contains(QUuid(part)))
            part = QUuid(part).toString();
    }
    return parts.join(QLatin1Char('#'));
}

} // namespace DataAccess::Manager
