#pragma once

#include <QString>
#include <QStringList>

namespace DataAccess::Manager {

class StatementRunner;

/**
 * What others have put on a table that is dropped and created again: its owner, grants and comments, and its indexes,
 * constraints and triggers; on SQLite the last but constraints. Foreign keys that lead to it: see DetachedForeignKeys.
 */
class TableAttachments
{
public:
    /// Notes what is on @p table, which is dropped next.
    void remember(StatementRunner& statements, const QString& table);
    /// Puts everything on the tables that exist again, and returns what does not fit any more, with the reason.
    QStringList restore(StatementRunner& statements);

private:
    QStringList m_tables;
    QStringList m_statements;
};

} // namespace DataAccess::Manager
