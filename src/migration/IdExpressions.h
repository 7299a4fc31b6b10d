#pragma once

#include <QSet>
#include <QString>
#include <QUuid>

namespace DataAccess::Manager {

/**
 * SQL expressions on columns with ids. The one spelling that an id is looked for in is that of QUuid::toString(): lower
 * case, with braces. QUuid also reads capitals, missing braces and blanks at the end; all other texts are no ids.
 */
class IdExpressions
{
public:
    explicit IdExpressions(bool isPostgres)
        : m_isPostgres(isPostgres)
    {}

    /// Whether @p column holds an id in another spelling.
    QString isOdd(const QString& column) const;
    /// The one spelling of what @p column holds; of no meaning unless that is an id.
    QString canonical(const QString& column) const;
    /// The same as @p condition, without a look at what lies behind large values of @p content: SQLite would read them
    /// whole to get there. Few of them are passed all the same.
    QString unlessFarBehind(const QString& table, const QString& content, const QString& condition) const;

    /// Whether @p column, a list of ids, may hold one in another spelling; never false where it does.
    static QString mayBeOddList(const QString& column);
    /// @p list with all ids in the one spelling, except @p exempt.
    static QString canonicalList(const QString& list, const QSet<QUuid>& exempt);

private:
    bool m_isPostgres;
};

} // namespace DataAccess::Manager
