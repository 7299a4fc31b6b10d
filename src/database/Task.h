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
     * NotOpenException when the worker ended, or the task was cancelled, before the job ran. Reports the failures that
     * the job has reported. Must not be called on the worker's thread.
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

    /// Keeps a job that has not begun from running; whether that was in time. May be called on any thread.
    bool Cancel() { return state()->end("The job was cancelled before it ran"); }

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
            const Stage before = leaveWaiting(Stage::Ended);
            if (before == Stage::Cancelled)
                return;
            if (before == Stage::Ended)
                throw std::future_error(std::future_errc::promise_already_satisfied);
            try {
                const FailureWatch watch;
                T value = job(database);
                failures = watch.failures();
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

        /// Ends a task whose job has not begun; whether that was in time.
        bool end(const char* reason)
        {
            if (leaveWaiting(Stage::Cancelled) != Stage::Waiting)
                return false;
            fail(std::make_exception_ptr(Exceptions::NotOpenException(reason)));
            return true;
        }

        void fail(std::exception_ptr reason)
        {
            job = nullptr;
            result.set_exception(std::move(reason));
            completion.set_value(false);
        }

        std::function<T(Interfaces::IDatabase&)> job;
        std::promise<T> result;
        std::promise<bool> completion;
        QVector<Failure> failures;

    private:
        enum class Stage { Waiting, Ended, Cancelled };

        /// Goes from Waiting to @p next, and gives the stage before.
        Stage leaveWaiting(Stage next)
        {
            Stage before = Stage::Waiting;
            m_stage.compare_exchange_strong(before, next);
            return before;
        }

        std::atomic<Stage> m_stage{Stage::Waiting};
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
