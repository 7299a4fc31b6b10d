#pragma once

#include "migration/DetachedForeignKeys.h"
#include "migration/MigrationModule.h"
#include "migration/StatementRunner.h"
#include "migration/TableDefinition.h"

#include <QStringList>

#include <functional>
#include <memory>

namespace DataAccess::Manager {

/// What a migration step works with: the statements that change tables. The first failure throws and ends the step.
class MigrationStep : public StatementRunner
{
public:
    MigrationStep(Interfaces::IDatabase& db, const MigrationModule& module);

    /// The tables of the database as they are now.
    QStringList tables() const;
    /// Whether @p layout's table has all of its columns, as it has when the step ran before.
    bool hasColumns(const TableDefinition& layout);
    /**
     * The parts of the statement that creates @p table. PostgreSQL refuses references to tables that are missing;
     * there, and only there, they are left out.
     */
    QStringList statementParts(const TableDefinition& table) const;

    /// Creates @p table, without a sequence.
    void create(const TableDefinition& table);
    /// Drops @p table with its rows.
    void discard(const QString& table);
    /**
     * Gives a table a new layout by way of a work table, unless it has it already. @p save copies the rows into the
     * work table @p workName, @p restore copies them back, @p afterwards runs while the work table still exists.
     */
    void rebuild(const TableDefinition& from, const TableDefinition& to, const QString& workName, const QString& save,
                 const QString& restore, const std::function<void()>& afterwards = {});
    /// Ends the step unless @p errors is 0.
    void require(unsigned int errors) const;
    /// Puts back what had to be taken off to drop tables; the last thing before the commit.
    void restoreForeignKeys();

private:
    void drop(const QString& table, DetachedForeignKeys::Rows rows);

    const MigrationModule& m_module;
    std::shared_ptr<Interfaces::IValueConverter> m_converter;
    DetachedForeignKeys m_foreignKeys;
};

} // namespace DataAccess::Manager
