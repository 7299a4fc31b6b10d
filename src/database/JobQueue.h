#pragma once

#include "database/DataAccessExport.h"

#include <deque>
#include <functional>
#include <mutex>

namespace DataAccess::Interfaces {
class IDatabase;
}

namespace DataAccess::Database {

class DbWorker;

/// A piece of work on the worker's thread.
using Job = std::function<void(Interfaces::IDatabase&)>;

/**
 * The jobs that wait for a worker, oldest first. Those who submit jobs share it, and may outlive the worker: a
 * queue without a worker drops what it is given. All operations may be called on any thread.
 */
class DATAACCESS_EXPORT JobQueue
{
public:
    explicit JobQueue(DbWorker* worker);
    JobQueue(const JobQueue&) = delete;
    JobQueue& operator=(const JobQueue&) = delete;

    /// Appends @p job and asks the worker to run it. Destroys @p job unrun when the worker is gone.
    void push(Job job);
    /// Takes the oldest job into @p job. When more wait, and no request of theirs is under way, it asks the worker to
    /// come again. False when there is none.
    bool pop(Job& job);
    /// Parts from the worker and destroys the waiting jobs unrun.
    void close();

private:
    std::mutex m_mutex;
    std::deque<Job> m_jobs;
    DbWorker* m_worker;
};

} // namespace DataAccess::Database
