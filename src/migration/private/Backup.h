#pragma once

#include <QPair>
#include <QString>
#include <QVector>

namespace DataAccess::Database {
class StatementRunner;
}

namespace DataAccess::Manager {

using Database::StatementRunner;

struct MigrationModule;

/**
 * The copy that is made before the first step of a migration: of the whole file on SQLite, of the tables on PostgreSQL.
 * For use in the transaction of that step, which has locked other programs out.
 */
class Backup
{
public:
    /// Both must outlive the object.
    Backup(StatementRunner& statements, const MigrationModule& module);

    /**
     * Makes the copy, unless the configuration does not want one, there is nothing to lose (no row in the tables that
     * the steps may change), or the database is no file of its own: a legacy file stays as it is. Throws
     * ExecutionException; nothing of the copy is left then.
     */
    void make();
    /// Removes the copy when nothing was changed after all. Copies of tables are gone with the transaction.
    void withdraw();

private:
    QVector<QPair<QString, qint64>> countRows();

    StatementRunner& m_statements;
    const MigrationModule& m_module;
    QString m_file;
};

} // namespace DataAccess::Manager
