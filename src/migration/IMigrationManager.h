#pragma once

#include "database/DataAccessExport.h"

#include <QString>
#include <QStringList>
#include <QtGlobal>

namespace DataAccess::Database {
class DbWorker;
}

namespace DataAccess::Interfaces {

/**
 * Brings the tables of one part of a database to the layout that this build expects, step by numbered step.
 *
 * Used by one thread at a time, which waits while the work is done on the worker's thread; never by the worker's thread
 * itself. Nothing here throws: failures are logged in the manager's category and answered as each operation states.
 */
class DATAACCESS_EXPORT IMigrationManager
{
public:
    virtual ~IMigrationManager();
    IMigrationManager() = default;
    IMigrationManager(const IMigrationManager&) = delete;
    IMigrationManager& operator=(const IMigrationManager&) = delete;

    /// Sets the worker of the database, which stays the caller's and must outlive its use here.
    virtual void setDbWorker(Database::DbWorker* worker) = 0;
    /// The stored version; 0 for a database without one, InvalidVersion() when there is no telling.
    virtual quint32 DbVersion() const = 0;
    /// What stands for "unknown"; greater than every version.
    virtual quint32 InvalidVersion() const = 0;
    /// The version that this build works with.
    virtual quint32 ExpectedVersion() const = 0;
    /// Connects, and waits about two seconds for a server that refuses, as one does that is starting; false without
    /// success. A server that does not answer at all is given up when the driver gives up, after five seconds.
    virtual bool WaitForConnected() = 0;
    /**
     * Runs the steps between the stored version and the expected one, and stores the version after each. True when the
     * database is at the expected version afterwards. A step that fails leaves nothing behind; the next call starts
     * with it. A newer database and one of unknown version are left alone: false.
     */
    virtual bool Migrate() = 0;
    /// How many steps Migrate() would run.
    virtual quint32 MigrationSteps() const = 0;
    /// The name of the settings row that holds the version.
    virtual QString feature() = 0;
    /// What the user should be told about the migrations that have run.
    virtual QStringList migrationMessages() = 0;
};

} // namespace DataAccess::Interfaces
