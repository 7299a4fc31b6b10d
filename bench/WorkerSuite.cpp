#include "bench/BenchDatabase.h"
#include "bench/Stopwatch.h"
#include "bench/Suites.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <sched.h>
#include <thread>
#include <utility>

namespace Bench {

namespace {

/// A thread that runs jobs, made of nothing but the standard library's parts; the least that a worker can cost.
class BareThread
{
public:
    BareThread()
        : m_thread([this] { work(); })
    {}
    ~BareThread()
    {
        submit(nullptr);
        m_thread.join();
    }
    BareThread(const BareThread&) = delete;
    BareThread& operator=(const BareThread&) = delete;

    /// Runs @p job and waits until it has ended.
    void run(std::function<void()> job)
    {
        submit(std::move(job));
        std::unique_lock<std::mutex> lock(m_mutex);
        m_done.wait(lock, [this] { return m_jobs.empty(); });
    }

private:
    /// Appends @p job to those that the thread is to run; a null one ends it.
    void submit(std::function<void()> job)
    {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_jobs.push_back(std::move(job));
        }
        m_submitted.notify_one();
    }

    void work()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        for (;;) {
            m_submitted.wait(lock, [this] { return !m_jobs.empty(); });
            const std::function<void()> job = std::move(m_jobs.front());
            if (!job)
                return;
            lock.unlock();
            job();
            lock.lock();
            m_jobs.pop_front();
            m_done.notify_one();
        }
    }

    std::mutex m_mutex;
    std::condition_variable m_submitted;
    std::condition_variable m_done;
    std::deque<std::function<void()>> m_jobs;
    std::thread m_thread;
};

/// Keeps the process on the core that it runs on, as long as the object lives.
class OneCore
{
public:
    OneCore()
    {
        cpu_set_t core;
        CPU_ZERO(&core);
        CPU_SET(static_cast<std::size_t>(sched_getcpu()), &core);
        if (sched_getaffinity(0, sizeof m_before, &m_before) != 0 || sched_setaffinity(0, sizeof core, &core) != 0)
            qFatal("The process cannot be kept on one core");
    }
    ~OneCore() { sched_setaffinity(0, sizeof m_before, &m_before); }
    OneCore(const OneCore&) = delete;
    OneCore& operator=(const OneCore&) = delete;

private:
    cpu_set_t m_before;
};

} // namespace

void measureWorker(const Settings& settings, Report& report)
{
    // Between two cores, how deep the other one sleeps would count ten times as much as what either side does.
    const OneCore core;
    const TestSupport::TestDatabase database(DataAccess::Enumerations::SQLite3);
    TestSupport::RunningWorker worker(database.config());
    BareThread bare;
    const int jobs = settings.rows(20000);
    std::vector<double> viaLibrary;
    std::vector<double> viaThread;
    for (int round = 0; round < settings.rounds(); ++round) {
        int done = 0;
        viaLibrary.push_back(seconds([&] {
            for (int i = 0; i < jobs; ++i)
                worker.run([&](DataAccess::Interfaces::IDatabase&) { ++done; });
        }));
        viaThread.push_back(seconds([&] {
            for (int i = 0; i < jobs; ++i)
                bare.run([&] { ++done; });
        }));
        if (done != 2 * jobs)
            qFatal("A job was lost");
    }
    Measurement measurement;
    measurement.subject = QStringLiteral("empty job");
    measurement.operation = QStringLiteral("round trip");
    measurement.unit = QStringLiteral("µs");
    measurement.library = 1e6 * median(viaLibrary) / jobs;
    measurement.bare = 1e6 * median(viaThread) / jobs;
    report.add(measurement);
}

} // namespace Bench
