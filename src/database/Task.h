#pragma once

#include "database/DbException.h"
#include "database/Failure.h"
#include "database/IDatabase.h"
#include "database/JobQueue.h"

#include <atomic>
#include <chrono>
#include <exception>
#include <functional>
#include <future>
#include <memory>
#include <utility>

namespace DataAccess::Database {

/**
 * The handle of a job's result. Whoever gets a task from an asynchronous operation owns it, and may delete it before
 * the job has run: the job runs all the same.
 */
template <typename T>
class Task
{
public:
    explicit Task(std::function<T(Interfaces::IDatabase&)> job)
        : m_state(std::make_shared<State>(std::move(job)))
        , m_result(m_state->result.get_future())
        , m_completion(m_state->completion.get_future())
    {}
    Task(Task&&) noexcept = default;
    Task& operator=(Task&&) noexcept = default;
    Task(const Task&) = delete;
    Task& operator=(const Task&) = delete;
    ~Task() = default;

    /**
     * Runs the job on @p database and stores its result, or the exception it threw; on the worker. Throws
     * std::future_error when the task has no state (it was moved from) or has run before.
     */
    void operator()(Interfaces::IDatabase& database) { state()->run(database); }

    /**
     * Waits for the result and takes it; a second call throws std::future_error. Throws what the job threw, and
     * NotOpenException when the worker ended, or a task that it is tied to failed, before the job ran. Reports the
     * failures that the job has reported. Must not be called on the worker's thread.
     */
    T Result()
    {
        T result = m_result.get();
        for (const Failure& failure : m_state->failures)
            FailureWatch::report(failure);
        return result;
    }

    /// Waits until the job has ended, without taking the result.
    void Wait() const { m_completion.wait(); }

    /// Whether the job has ended; does not wait.
    bool IsCompleted() const { return m_completion.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }

    /// What the job reported; to be asked when it has ended.
    const QVector<Failure>& Failures() const { return m_state->failures; }

    /// Ties the task to all that share @p failed, which starts out false: the first of them to fail sets it on the
    /// worker, and a job that has not begun by then does not run. May be called on any thread.
    void TieTo(std::shared_ptr<std::atomic<bool>> failed) { state()->tieTo(std::move(failed)); }

    /// Becomes ready when the job has ended: true when a result is stored, false when an exception is.
    const std::shared_future<bool>& Completion() const { return m_completion; }

    /**
     * The task as a job of a queue. A job destroyed without having run fulfils the task with NotOpenException. Throws
     * std::future_error when the task was moved from.
     */
    Job toJob() const
    {
        return
            [turn = std::make_shared<Turn>(state())](Interfaces::IDatabase& database) { turn->state->run(database); };
    }

private:
    struct State
    {
        explicit State(std::function<T(Interfaces::IDatabase&)> work)
            : job(std::move(work))
        {}

        void run(Interfaces::IDatabase& database)
        {
            if (const auto failed = std::atomic_load(&m_tie); failed && *failed)
                end("A job that this one belongs with has failed");
            const Stage before = leaveWaiting(Stage::Ended);
            if (before == Stage::Dropped)
                return;
            if (before == Stage::Ended)
                throw std::future_error(std::future_errc::promise_already_satisfied);
            try {
                const FailureWatch watch;
                T value = job(database);
                failures = watch.failures();
                if (watch.failed())
                    tellTied();
                result.set_value(std::move(value));
            } catch (...) {
                const std::exception_ptr reason = std::current_exception();
                fail(reason ? reason
                            : std::make_exception_ptr(
                                  Exceptions::NotOpenException("The thread of the database was terminated")));
                if (!reason)
                    throw; // QThread::terminate(), no C++ exception: must be rethrown, or the process aborts.
                return;
            }
            job = nullptr;
            completion.set_value(true);
        }

        /// Ends a task whose job has not begun.
        void end(const char* reason)
        {
            if (leaveWaiting(Stage::Dropped) == Stage::Waiting)
                fail(std::make_exception_ptr(Exceptions::NotOpenException(reason)));
        }

        void tieTo(std::shared_ptr<std::atomic<bool>> failed)
        {
            std::atomic_store(&m_tie, std::move(failed));
            // The job may have failed before there was anybody to be told.
            if (m_hasFailed)
                tellTied();
        }

        void tellTied()
        {
            m_hasFailed = true;
            if (const auto failed = std::atomic_load(&m_tie))
                *failed = true;
        }

        void fail(std::exception_ptr reason)
        {
            tellTied();
            job = nullptr;
            result.set_exception(std::move(reason));
            completion.set_value(false);
        }

        std::function<T(Interfaces::IDatabase&)> job;
        std::promise<T> result;
        std::promise<bool> completion;
        QVector<Failure> failures;

    private:
        enum class Stage { Waiting, Ended, Dropped };

        /// Goes from Waiting to @p next, and gives the stage before.
        Stage leaveWaiting(Stage next)
        {
            Stage before = Stage::Waiting;
            m_stage.compare_exchange_strong(before, next);
            return before;
        }

        std::atomic<Stage> m_stage{Stage::Waiting};
        std::atomic<bool> m_hasFailed{false};
        std::shared_ptr<std::atomic<bool>> m_tie; ///< Read and written atomically.
    };

    /// The place of a task in a queue.
    struct Turn
    {
        explicit Turn(std::shared_ptr<State> waiting)
            : state(std::move(waiting))
        {}
        ~Turn() { state->end("The worker of the database ended before the job ran"); }
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;

        std::shared_ptr<State> state;
    };

    const std::shared_ptr<State>& state() const
    {
        if (!m_state)
            throw std::future_error(std::future_errc::no_state);
        return m_state;
    }

    std::shared_ptr<State> m_state;
    std::future<T> m_result;
    std::shared_future<bool> m_completion;
};

} // namespace DataAccess::Database
