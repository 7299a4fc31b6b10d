#include "database/JobQueue.h"

#include "database/DbWorker.h"

#include <QCoreApplication>

#include <utility>

namespace DataAccess::Database {

JobQueue::JobQueue(DbWorker* worker)
    : m_worker(worker)
{}

void JobQueue::push(Job job)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    // Qt delivers no event after the application object has ended: the job would wait for ever.
    if (m_worker == nullptr || QCoreApplication::closingDown())
        return;
    m_jobs.push_back(std::move(job));
    m_worker->scheduleProcessQueue();
}

bool JobQueue::pop(Job& job)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_jobs.empty())
        return false;
    job = std::move(m_jobs.front());
    m_jobs.pop_front();
    // Each waiting job has a request under way, except those inserted while a job ran the event loop.
    if (!m_jobs.empty() && !m_worker->isScheduled())
        m_worker->scheduleProcessQueue();
    return true;
}

void JobQueue::close()
{
    std::deque<Job> dropped;
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_worker = nullptr;
    dropped.swap(m_jobs);
}

} // namespace DataAccess::Database
