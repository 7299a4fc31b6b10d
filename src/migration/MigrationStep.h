#pragma once

#include "migration/DetachedForeignKeys.h"
#include "migration/MigrationModule.h"
#include "migration/StatementRunner.h"
#include "migration/TableAttachments.h"
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
    /// Drops @p table; the log says how many rows go with it.
    void discard(const QString& table);
    /// Deletes all rows of @p table; the log says how many.
    void empty(const QString& table);
    /// Drops @p table, whose rows are elsewhere by now.
    void dropCopied(const QString& table);
    /// Drops the table of @p layout, whose rows are elsewhere for the moment, and creates it again.
    void replace(const TableDefinition& layout);
    /// Says in the log that @p rows of @p table are gone, unless that are none.
    void tellDiscarded(const QString& table, qint64 rows) const;
    /**
     * Gives a table a new layout by way of a work table, unless it has it already. @p save copies the rows into the
     * work table @p workName, @p restore copies them back, @p afterwards runs while the work table still exists.
     */
    void rebuild(const TableDefinition& from, const TableDefinition& to, const QString& workName, const QString& save,
                 const QString& restore, const std::function<void()>& afterwards = {});
    /// Ends the step unless @p errors is 0.
    void require(unsigned int errors) const;
    /// Puts back what others have put on tables that were dropped; the last thing before the commit.
    void restoreAttachments();

private:
    void drop(const QString& table, DetachedForeignKeys::Rows rows);

    const MigrationModule& m_module;
    std::shared_ptr<Interfaces::IValueConverter> m_converter;
    DetachedForeignKeys m_foreignKeys;
    TableAttachments m_attachments;
};

} // namespace DataAccess::Manager
