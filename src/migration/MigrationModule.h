#pragma once

#include <QLoggingCategory>
#include <QString>

namespace DataAccess::Manager {

/// What sets one migration manager apart from another.
struct MigrationModule
{
    /// The name of the settings row that holds the version.
    QString feature;
    /// The version that this build works with.
    quint32 expectedVersion;
    /// Where everything is logged.
    const QLoggingCategory& (*category)();
    /// What stands in front of the log line of a migration.
    QString logPrefix;
};

} // namespace DataAccess::Manager
