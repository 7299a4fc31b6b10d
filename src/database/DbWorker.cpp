#include "database/DbWorker.h"

#include "database/Database.h"
#include "database/LoggingCategories.h"

#include <QThread>

#include <exception>
#include <stdexcept>
#include <thread>
#include <utility>

namespace DataAccess::Database {

using Interfaces::IDatabase;

namespace {

/// Gives the database to one job, whatever the job does.
class JobScope
{
public:
    explicit JobScope(IDatabase& database)
        : m_database(database)
    {
        m_database.BeginJob();
    }
    ~JobScope() { m_database.EndJob(); }
    JobScope(const JobScope&) = delete;
    JobScope& operator=(const JobScope&) = delete;

private:
    IDatabase& m_database;
};

void run(const Job& job, IDatabase& database)
{
    // An exception that reached the event loop would end the process.
    try {
        const JobScope scope(database);
        job(database);
    } catch (const std::exception& error) {
        qCCritical(lcDatabase) << "Job failed:" << error.what();
    } catch (...) {
        if (!std::current_exception())
            throw; // QThread::terminate(), no C++ exception: must be rethrown, or the process aborts.
        qCCritical(lcDatabase) << "Job failed";
    }
}

} // namespace

struct DbWorker::Data
{
    std::unique_ptr<IDatabase> database;
    std::shared_ptr<JobQueue> queue;
    std::atomic<bool> running{false};
    /// Whether a request came while a job was running the event loop, and could not be served.
    std::atomic<bool> postponed{false};
    /// How many requests are under way.
    std::atomic<int> requests{0};
};

std::unique_ptr<DbWorker> DbWorker::make_worker(QThread* thread, std::shared_ptr<Interfaces::IConfig> config)
{
    if (thread == nullptr || !config)
        throw std::invalid_argument("thread or config nullptr");
    const QString name = config->ConnectionName();
    auto database = std::make_unique<Database>(std::move(config), nullptr);
    Database* const connection = database.get();
    connection->moveConnectionToThread(thread);
    connection->moveToThread(thread);
    connection->setObjectName(QStringLiteral("Database_") + name);
    // The connection is used on this thread only, and so it is closed there.
    connect(thread, &QThread::finished, connection, &Database::leaveThread, Qt::DirectConnection);

    auto worker = std::make_unique<DbWorker>(std::move(database), nullptr);
    worker->setObjectName(QStringLiteral("Worker_") + name);
    worker->moveToThread(thread);
    connect(thread, &QThread::started, worker.get(), &DbWorker::processQueue);
    return worker;
}

DbWorker::DbWorker(std::unique_ptr<IDatabase> database, QObject* parent)
    : QObject(parent)
    , m_data(std::make_unique<Data>())
{
    m_data->database = std::move(database);
    m_data->queue = std::make_shared<JobQueue>(this);
}

DbWorker::~DbWorker()
{
    while (m_data->running.load(std::memory_order_acquire))
        std::this_thread::yield();
    m_data->queue->close();
}

void DbWorker::insert(Job job)
{
    m_data->queue->push(std::move(job));
}

void DbWorker::scheduleProcessQueue()
{
    ++m_data->requests;
    const auto request = [this] {
        --m_data->requests;
        processQueue();
    };
    QMetaObject::invokeMethod(this, request, Qt::QueuedConnection);
}

bool DbWorker::isScheduled() const
{
    return m_data->requests > 0;
}

std::shared_ptr<JobQueue> DbWorker::queue() const
{
    return m_data->queue;
}

void DbWorker::processQueue()
{
    bool idle = false;
    if (!m_data->running.compare_exchange_strong(idle, true, std::memory_order_acq_rel)) {
        m_data->postponed = true;
        return;
    }
    /// Ends a run, also one that is broken off with its thread.
    struct RunScope
    {
        DbWorker& worker;

        explicit RunScope(DbWorker& running)
            : worker(running)
        {}
        ~RunScope()
        {
            if (worker.m_data->postponed.exchange(false))
                worker.scheduleProcessQueue();
            worker.m_data->running.store(false, std::memory_order_release);
        }
        RunScope(const RunScope&) = delete;
        RunScope& operator=(const RunScope&) = delete;
    };
    const RunScope scope(*this);
    Job job;
    if (m_data->queue->pop(job))
        run(job, *m_data->database);
}

} // namespace DataAccess::Database
