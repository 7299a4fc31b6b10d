#pragma once

#include "database/DbException.h"
#include "database/Failure.h"
#include "database/LoggingCategories.h"
#include "repositories/IRepository.h"

#include <atomic>
#include <exception>
#include <memory>
#include <utility>

/// How contexts call repositories.
namespace DataAccess::Context {

/// What @p operation gives. What it throws is logged, as that of @p function, and reported as any other failure.
template <typename Operation>
auto guarded(const char* function, const Operation& operation) -> decltype(operation())
{
    using Database::Failure;
    const auto report = [function](const char* reason, Failure::Kind kind) {
        qCCritical(lcContext) << function << reason;
        Failure failure;
        failure.reason = QString::fromLocal8Bit(reason);
        failure.kind = kind;
        Database::FailureWatch::report(failure);
    };
    try {
        return operation();
    } catch (const Exceptions::DbException& error) {
        report(error.what(), error.isUnavailable() ? Failure::Kind::Unavailable : Failure::Kind::Statement);
    } catch (const std::exception& error) {
        report(error.what(), Failure::Kind::Statement);
    }
    return decltype(operation())();
}

/// The words for what @p watch has seen fail with entities of the kind called @p kind; empty when nothing did.
inline QString failureText(const char* kind, const Database::FailureWatch& watch)
{
    return watch.failed() ? QLatin1String(kind) + QLatin1String(": ") + watch.reason() : QString();
}

/// The load of one kind that may be under way.
template <typename T>
class PendingLoad
{
public:
    using Entities = typename Interfaces::IRepository<T>::Entities;

    /// Queues the load of all that @p repository, which may be null, has of the kind called @p kind. It is tied to
    /// the loads that share @p failed.
    void start(const char* kind, const std::shared_ptr<Interfaces::IRepository<T>>& repository,
               const std::shared_ptr<std::atomic<bool>>& failed)
    {
        m_kind = kind;
        if (!repository)
            return;
        const Database::FailureWatch watch;
        m_task.reset(guarded(Q_FUNC_INFO, [&] { return repository->GetAllAsync(); }));
        m_failure = failureText(m_kind, watch);
        if (m_task)
            m_task->TieTo(failed);
    }
    bool isStarted() const { return m_task || !m_failure.isEmpty(); }

    /// Waits for the load. Why it failed; empty when it did not, or none was started.
    QString failure()
    {
        if (m_task && !(m_task->Completion().get() && m_task->Failures().isEmpty())) {
            const Database::FailureWatch watch;
            guarded(Q_FUNC_INFO, [this] { return result(); });
            m_failure = failureText(m_kind, watch);
        }
        return m_failure;
    }

    /// Waits for the load and moves out what it gave; nothing when none is under way.
    Entities result()
    {
        const auto task = std::exchange(m_task, nullptr);
        return task ? task->Result() : Entities();
    }

private:
    std::unique_ptr<Database::Task<Entities>> m_task;
    const char* m_kind = "";
    QString m_failure;
};

} // namespace DataAccess::Context
