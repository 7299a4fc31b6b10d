#pragma once

#include "database/backends/SchemaDialect.h"

#include <QString>
#include <QStringList>
#include <QVector>

namespace DataAccess::Database {
class StatementRunner;
}

namespace DataAccess::Manager {

using Database::StatementRunner;

/**
 * What others have put on a table that is dropped and created again: its owner, grants and comments, its indexes,
 * constraints and triggers, as far as the backend has them, and the foreign keys of other tables that lead to it.
 */
class TableAttachments
{
public:
    /// What becomes of the rows of a table that is dropped.
    enum class Rows { Kept, Discarded };

    /// @p statements must outlive the object.
    explicit TableAttachments(StatementRunner& statements);

    /// Notes what is on @p table, which is dropped next.
    void remember(const QString& table);
    /// Takes off the foreign keys on @p table, which is dropped next, or whose ids change.
    void detachForeignKeys(const QString& table, Rows rows);
    /// Puts what was noted on the tables, which exist again, and returns what does not fit any more, with the reason.
    QStringList restore();
    /// Puts back the foreign keys on tables that exist again, and returns the others.
    QStringList attachForeignKeys();

private:
    struct Detached
    {
        Database::ForeignKey foreignKey;
        Rows rows;
    };

    bool attach(const Detached& detached);

    StatementRunner& m_statements;
    QStringList m_tables;
    QStringList m_creations;
    QVector<Detached> m_foreignKeys;
};

} // namespace DataAccess::Manager
