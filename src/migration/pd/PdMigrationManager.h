#pragma once

#include "migration/AbstractMigrationManager.h"

namespace DataAccess::Manager {

/// Migrates the tables of the partial-discharge results.
class DATAACCESS_EXPORT PdMigrationManager : public AbstractMigrationManager
{
    Q_OBJECT

public:
    /// Has no worker yet: see setDbWorker().
    explicit PdMigrationManager(QObject* parent = nullptr);
    ~PdMigrationManager() override;

private:
    using AbstractMigrationManager::createTable;

    /// How the rows of a table are kept aside: the name of the work table, and the statements.
    struct Copy
    {
        QString workName;
        QString select;
        QString save;
        QString restore;
    };

    const MigrationModule& module() const override;
    QVector<Step> steps() override;

    /// Creates the tables of files, tasks, reports and mappings.
    bool Pd_01();
    /// Creates the tables of report mappings, report filters and IEC results.
    bool Pd_02();
    /// Creates the table of evaluations.
    bool Pd_03();
    /// Creates the tables of mapping events, IEC overviews and summaries.
    bool Pd_04();
    /// IEC overviews get a sensitivity level.
    bool Pd_05();
    /// Creates the table of task information.
    bool Pd_06();
    /// Summaries get the maximum voltage that was applied.
    bool Pd_07();
    /// Creates the table of diagram settings.
    bool Pd_08();

    /// Creates a table without a sequence; one that is there already is left alone, and logged with @p existsText.
    void createUnlessPresent(MigrationStep& step, const TableDefinition& table, const char* existsText);
    /**
     * Gives a table a new layout by way of the work table of @p copy. Rows that wait there since another program was
     * cut short are brought back too, unless the table has rows of the same ids; the work table is gone afterwards.
     */
    void rebuild(MigrationStep& step, const TableDefinition& from, const TableDefinition& to, const Copy& copy);
};

} // namespace DataAccess::Manager
