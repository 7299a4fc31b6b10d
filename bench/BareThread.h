#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace Bench {

/// A thread that runs jobs, made of nothing but the standard library's parts; the least that a worker can cost.
class BareThread
{
public:
    BareThread();
    ~BareThread();
    BareThread(const BareThread&) = delete;
    BareThread& operator=(const BareThread&) = delete;

    /// Appends @p job to those that the thread is to run.
    void submit(std::function<void()> job);
    /// Waits until all jobs have ended.
    void wait();

private:
    void work();

    std::mutex m_mutex;
    std::condition_variable m_submitted;
    std::condition_variable m_done;
    std::deque<std::function<void()>> m_jobs;
    bool m_running = false;
    bool m_stopping = false;
    std::thread m_thread;
};

} // namespace Bench
