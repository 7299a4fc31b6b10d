#pragma once

#include "database/JobQueue.h"

#include <QObject>

#include <atomic>
#include <memory>

class QThread;

namespace DataAccess::Interfaces {
class IConfig;
class IDatabase;
} // namespace DataAccess::Interfaces

namespace DataAccess::Database {

/**
 * Owns a database and runs jobs on it, one at a time and in the order they were handed in, on the thread it lives on.
 *
 * To be destroyed once its thread has stopped: jobs that still wait are dropped, and whoever waits on a task of theirs
 * gets NotOpenException. An exception that leaves a job is logged (category "qor.database"); the next job runs.
 */
class DATAACCESS_EXPORT DbWorker : public QObject
{
    Q_OBJECT

public:
    /**
     * Makes a database of @p config and its worker, both at home on @p thread. Starting the thread, stopping it and
     * joining it is left to the caller. Throws std::invalid_argument when an argument is null.
     */
    static std::unique_ptr<DbWorker> make_worker(QThread* thread, std::shared_ptr<Interfaces::IConfig> config);

    /// Owns @p database, which may not be null; starts nothing.
    explicit DbWorker(std::unique_ptr<Interfaces::IDatabase> database, QObject* parent = nullptr);
    ~DbWorker() override;
    DbWorker(const DbWorker&) = delete;
    DbWorker& operator=(const DbWorker&) = delete;

    /// Appends @p job. Any thread; does not wait for a job that runs.
    void insert(Job job);
    /// Asks for processQueue() to run on the worker's thread. Any thread.
    void scheduleProcessQueue();
    /// Whether such a request is under way. Any thread.
    bool isScheduled() const;
    /// The queue that insert() appends to, for those who may outlive the worker.
    std::shared_ptr<JobQueue> queue() const;

public Q_SLOTS:
    /// Runs the oldest job, if any. To be called on the worker's thread; does nothing while a job runs.
    void processQueue();

private:
    struct Data;

    std::unique_ptr<Data> m_data;
};

} // namespace DataAccess::Database
