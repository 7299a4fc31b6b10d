#pragma once

#include "context/Guarded.h"
#include "repositories/IRepository.h"

#include <QHash>

#include <atomic>
#include <memory>
#include <utility>

namespace DataAccess::Context {

/// A place for the load of one kind that is under way.
template <typename T>
class PendingLoad
{
public:
    using Entities = typename Interfaces::IRepository<T>::Entities;

    /// Queues the load of all that @p repository, which may be null, has. It is tied to the loads that share @p failed.
    void start(const std::shared_ptr<Interfaces::IRepository<T>>& repository,
               const std::shared_ptr<std::atomic<bool>>& failed)
    {
        if (!repository)
            return;
        const Database::FailureWatch watch;
        m_task.reset(guarded(Q_FUNC_INFO, [&] { return repository->GetAllAsync(); }));
        m_failure = failureText<T>(watch);
        if (m_task)
            m_task->TieTo(failed);
    }
    bool isFilled() const { return m_task || !m_failure.isEmpty(); }

    /// Waits for the load. Why it failed; empty when it did not, or none is under way.
    QString failure()
    {
        if (m_task && !(m_task->Completion().get() && m_task->Failures().isEmpty())) {
            const Database::FailureWatch watch;
            guarded(Q_FUNC_INFO, [this] { return take(); });
            m_failure = failureText<T>(watch);
        }
        return m_failure;
    }

    /// Waits for the load and takes what it gave; nothing when none is under way.
    Entities take()
    {
        const auto task = std::exchange(m_task, nullptr);
        return task ? task->Result() : Entities();
    }

private:
    std::unique_ptr<Database::Task<Entities>> m_task;
    QString m_failure;
};

} // namespace DataAccess::Context
