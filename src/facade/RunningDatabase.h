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
class RunningDatabase
{
public:
    /// Throws std::invalid_argument when @p config is null.
    explicit RunningDatabase(const std::shared_ptr<Interfaces::IConfig>& config);
    /// Drops the jobs that wait, and ends the thread; by force when it has not ended after three seconds.
    ~RunningDatabase();
    RunningDatabase(const RunningDatabase&) = delete;
    RunningDatabase& operator=(const RunningDatabase&) = delete;

    Database::DbWorker* worker() const { return m_worker.get(); }
    /// Whether the calling thread is that of the worker.
    bool isOwnThread() const { return QThread::currentThread() == m_thread.get(); }
    /// Waits until all jobs that were queued before have run, or no job can run any more. Not on the worker's thread.
    void finishJobs();

    std::shared_ptr<Interfaces::IRepositoryManager> repositories;

private:
    std::unique_ptr<QThread> m_thread;
    std::unique_ptr<Database::DbWorker> m_worker;
};

} // namespace DataAccess
