#pragma once

#include "database/StatementRunner.h"
#include "migration/MigrationModule.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace DataAccess::Manager {

using Database::StatementRunner;

/// What a migration step works with: the statements that change tables. The first failure throws and ends the step.
class DATAACCESS_EXPORT SchemaChange : public StatementRunner
{
public:
    /// For the step of @p module that follows @p version. @p messages is where addMessage() adds; all must outlive the
    /// object.
    SchemaChange(Interfaces::IDatabase& db, const MigrationModule& module, quint32 version, QStringList& messages);
    ~SchemaChange();
    SchemaChange(const SchemaChange&) = delete;
    SchemaChange& operator=(const SchemaChange&) = delete;

    /// The step, as the list of steps has it.
    const MigrationStep& step() const;
    /// The layout of @p table as the steps before have left it.
    const TableDefinition& before(const QString& table) const;
    /// The layout of @p table as this step leaves it.
    const TableDefinition& after(const QString& table) const;
    /// The tables of the database as they are now.
    QStringList tables() const;
    /// Whether @p layout's table has all of its columns, as it has when the step ran before.
    bool hasColumns(const TableDefinition& layout);

    /// Creates the tables that hold the versions, where they are missing.
    void createVersionTables();
    /// Creates @p table, and the sequence of its ids, unless it is there.
    void createTable(const TableDefinition& table);
    /// The same for all tables of the step.
    void createTables();
    /// Creates @p table, which must not be there, without a sequence.
    void create(const TableDefinition& table);
    /**
     * Gives @p table its new layout by way of a work table of the name @p table_tmp, unless it has it already. @p save
     * copies the rows into the work table, @p restore copies them back, @p afterwards runs while the work table still
     * exists.
     */
    void rebuild(const QString& table, const QString& save, const QString& restore,
                 const std::function<void()>& afterwards = {});
    /// Drops the table of @p layout, whose rows are elsewhere for the moment, and creates it again.
    void replace(const TableDefinition& layout);
    /// Drops @p table; the log says how many rows go with it.
    void discard(const QString& table);
    /// Deletes all rows of @p table; the log says how many.
    void empty(const QString& table);
    /// Drops @p table, whose rows are elsewhere by now.
    void dropCopied(const QString& table);
    /// Says in the log that @p rows of @p table are gone, unless there are none.
    void tellDiscarded(const QString& table, qint64 rows) const;
    /// Runs @p part of the step; the log has its failure under @p name, and the step ends.
    void runPart(const char* name, const std::function<void()>& part);
    /// Adds to what the user is told: see IMigrationManager::migrationMessages().
    void addMessage(const QString& message);

private:
    friend class AbstractMigrationManager;
    struct Data;

    /// Puts back what others have put on tables that were dropped; the last thing before the commit.
    void restoreAttachments();
    QString createStatement(const TableDefinition& table) const;

    const std::unique_ptr<Data> m_data;
};

} // namespace DataAccess::Manager
