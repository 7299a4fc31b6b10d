#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

namespace DataAccess::Manager {

class StatementRunner;

/**
 * The foreign keys of other tables on a table that is dropped and created again. PostgreSQL drops no table that a
 * foreign key leads to, so they are taken off before and put back afterwards; SQLite keeps them by itself.
 */
class DetachedForeignKeys
{
public:
    /// What becomes of the rows of a table that is dropped.
    enum class Rows { Kept, Discarded };

    /// Takes off the foreign keys on @p table, which is dropped next.
    void detach(StatementRunner& statements, const QString& table, Rows rows);
    /// Puts back the foreign keys on tables that exist again, and returns the others.
    QStringList attach(StatementRunner& statements);

private:
    struct ForeignKey
    {
        QString table; ///< the table it leads to
        Rows rows;
        QVariant ownerId;
        QString owner;
        QString name;
        QString definition;
        bool isText;
    };

    QVector<ForeignKey> m_foreignKeys;
};

} // namespace DataAccess::Manager
