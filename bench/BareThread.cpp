#include "bench/BareThread.h"

#include <utility>

namespace Bench {

BareThread::BareThread()
    : m_thread([this] { work(); })
{}

BareThread::~BareThread()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stopping = true;
    }
    m_submitted.notify_one();
    m_thread.join();
}

void BareThread::submit(std::function<void()> job)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_jobs.push_back(std::move(job));
    }
    m_submitted.notify_one();
}

void BareThread::wait()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_done.wait(lock, [this] { return m_jobs.empty() && !m_running; });
}

void BareThread::work()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        m_submitted.wait(lock, [this] { return m_stopping || !m_jobs.empty(); });
        if (m_jobs.empty())
            return;
        const std::function<void()> job = std::move(m_jobs.front());
        m_jobs.pop_front();
        m_running = true;
        lock.unlock();
        job();
        lock.lock();
        m_running = false;
        if (m_jobs.empty())
            m_done.notify_one();
    }
}

} // namespace Bench
