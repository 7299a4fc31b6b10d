#pragma once

#include "database/DataAccessExport.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <memory>

namespace DataAccess::Interfaces {

class IConfig;
class IRepositoryManager;

/// The single object through which an application opens databases. A database is known by the configuration object that
/// it was opened with. Any thread may call; the thread of a database, within a job, GetRepositories(),
/// GetVersions() and LastError().
class DATAACCESS_EXPORT IDataAccessFacade
{
public:
    virtual ~IDataAccessFacade();

    // Applications rely on the order of these.
    /**
     * Opens the database of @p config, brings its schemas up to date, and gives a manager of all that there is for it;
     * the same one as before when it is open already. Null when it could not be brought up: LastError() says why. One
     * database is opened at a time; the caller waits. There has to be an application object. Throws
     * std::invalid_argument when @p config is null.
     */
    virtual std::shared_ptr<IRepositoryManager> AddDatabase(std::shared_ptr<IConfig> config) = 0;
    /// Returns what AddDatabase() gave for @p config; null when that database is not open.
    virtual std::shared_ptr<IRepositoryManager> GetRepositories(std::shared_ptr<IConfig> config) = 0;
    /**
     * Closes the database of @p config, if it is open: lets the jobs that wait finish, however long they take, and ends
     * its thread. Jobs that come later never run: whoever waits for one gets NotOpenException. Repositories, contexts
     * and tasks that are still held may end later; what they are asked from now on fails.
     */
    virtual void RemoveDatabase(std::shared_ptr<IConfig> config) = 0;
    /// The schema versions that this build works with, by the name of the schema: "1.3." and a number.
    virtual QHash<QString, QString> GetVersions() = 0;
    /// What the user should be told about the migrations that have run.
    virtual QStringList GetMigrationMessages() = 0;
    /**
     * Why the last AddDatabase() of @p config gave null: one sentence, with what the database or its driver said, never
     * a password. Empty when it gave a manager, or was never called. The default knows no reasons.
     */
    virtual QString LastError(std::shared_ptr<IConfig> config) const;

protected:
    IDataAccessFacade() = default;
    IDataAccessFacade(const IDataAccessFacade&) = default;
    IDataAccessFacade& operator=(const IDataAccessFacade&) = default;
};

} // namespace DataAccess::Interfaces
