#pragma once

#include "database/DbWorker.h"

#include <QThread>

#include <memory>

namespace DataAccess {

namespace Interfaces {
class IConfig;
class IRepositoryManager;
} // namespace Interfaces

/// The thread and the worker of one database, running from construction to the end, and what was handed out for it.
/// Must not be ended on the thread of a database: two databases may share a connection, which one job at a time holds.
class RunningDatabase
{
public:
    /// Throws std::invalid_argument when @p config is null. When the thread cannot run, all jobs fail.
    explicit RunningDatabase(const std::shared_ptr<Interfaces::IConfig>& config);
    /// Drops the jobs that wait, and ends the thread; by force when it has not ended after three seconds.
    ~RunningDatabase();
    RunningDatabase(const RunningDatabase&) = delete;
    RunningDatabase& operator=(const RunningDatabase&) = delete;

    /// Owned by this object.
    Database::DbWorker* worker() const { return m_worker.get(); }
    /// Waits until all jobs that were queued before have run, however long they take, and the thread has ended. Jobs
    /// that come later are dropped.
    void finish();

    /// Whether the calling thread is that of some database.
    static bool isDatabaseThread();

private:
    bool endThread();

    std::unique_ptr<QThread> m_thread;
    std::unique_ptr<Database::DbWorker> m_worker;

public:
    /// Released first, once the thread has ended.
    std::shared_ptr<Interfaces::IRepositoryManager> repositories;
};

} // namespace DataAccess
