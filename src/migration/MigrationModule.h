#pragma once

#include <QLoggingCategory>
#include <QString>
#include <QStringList>

#include <exception>

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
    /// The tables that the steps may change, besides the settings tables; in lower case.
    QStringList tables;

    /// Logs what has failed in @p function, and reports it to whoever wants to tell the application why.
    void tellFailure(const char* function, const std::exception& error) const;
};

} // namespace DataAccess::Manager
