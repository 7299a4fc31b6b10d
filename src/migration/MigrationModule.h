#pragma once

#include "database/DataAccessExport.h"
#include "migration/TableDefinition.h"

#include <QLoggingCategory>
#include <QString>
#include <QStringList>
#include <QVector>

#include <exception>

namespace DataAccess::Manager {

class SchemaChange;

/// One step of a migration. Its place in the list of steps is the version that it reaches.
struct DATAACCESS_EXPORT MigrationStep
{
    /// Makes the changes; throws when one of them fails.
    using Changes = void (*)(SchemaChange& schema);

    /// @p discarded and @p rewritten name tables, in lower case, separated by blanks.
    MigrationStep(const char* stepName, Changes function, const char* description,
                  QVector<TableDefinition> newLayouts = {}, const char* discarded = "", const char* rewritten = "");

    QString name;    ///< What the log and the user call it.
    Changes changes; ///< What it does.
    QString text;    ///< What it does, for those who are to decide whether it may run.
    /// The tables that it creates or gives a new layout, as it leaves them.
    QVector<TableDefinition> layouts;
    QStringList discards; ///< Tables that may lose rows.
    QStringList rewrites; ///< Tables whose rows are changed, or copied into a new layout.

    QString feature;     ///< The feature of the module that it belongs to.
    quint32 version = 0; ///< The version that it reaches; set by the module.
};

/// What sets one migration manager apart from another: the steps, and the names that it stores and logs.
struct DATAACCESS_EXPORT MigrationModule
{
    /// A category of the log, as Q_LOGGING_CATEGORY declares it.
    using Category = const QLoggingCategory& (*)();

    /// @p stepInLog is what the log calls a step, with %1 for its name; @p linePrefix stands in front of the log line
    /// of a migration.
    MigrationModule(const char* settingsRow, Category logCategory, const char* stepInLog, const char* linePrefix,
                    QVector<MigrationStep> allSteps);

    /// The version that this build works with.
    quint32 expectedVersion() const { return static_cast<quint32>(steps.size()); }
    /// The layout of @p table at @p version. Throws std::logic_error when it has none.
    const TableDefinition& layout(const QString& table, quint32 version) const;
    /// The tables that the steps may change, besides the settings tables; in lower case.
    QStringList tables() const;
    /// Logs what has failed in @p function, and reports it to whoever wants to tell the application why.
    void tellFailure(const QString& function, const std::exception& error) const;

    /// The name of the settings row that holds the version.
    QString feature;
    Category category;            ///< Where everything is logged.
    QString signature;            ///< What the log calls a step, with %1 for its name.
    QString logPrefix;            ///< What stands in front of the log line of a migration.
    QVector<MigrationStep> steps; ///< In the order in which they run; the first one reaches version 1.
};

/// The modules of this library: the cable network, then the partial-discharge results.
DATAACCESS_EXPORT QVector<const MigrationModule*> migrationModules();

} // namespace DataAccess::Manager
