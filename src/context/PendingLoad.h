#pragma once

#include "context/Guarded.h"
#include "repositories/IRepository.h"

#include <QHash>

#include <memory>
#include <utility>

namespace DataAccess::Context {

/// A place for the load of one kind that is under way.
template <typename T>
class PendingLoad
{
public:
    using Entities = typename Interfaces::IRepository<T>::Entities;

    /// Queues the load of all that @p repository, which may be null, has.
    void start(const std::shared_ptr<Interfaces::IRepository<T>>& repository)
    {
        if (repository)
            m_task.reset(repository->GetAllAsync());
    }
    bool isFilled() const { return m_task != nullptr; }

    /// Waits for the load. Why it failed; empty when it did not, or none is under way.
    QString failure()
    {
        if (!m_task)
            return {};
        const bool isComplete = m_task->Completion().get() && m_task->Failures().isEmpty();
        if (isComplete)
            return {};
        const Database::FailureWatch watch;
        guarded(Q_FUNC_INFO, [this] { return take(); });
        return failureText<T>(watch);
    }

    /// Lets go of the load, which does not run any more if it has not begun.
    void cancel()
    {
        if (const auto task = std::exchange(m_task, nullptr))
            task->Cancel();
    }

    /// Waits for the load and takes what it gave; nothing when none is under way.
    Entities take()
    {
        const auto task = std::exchange(m_task, nullptr);
        return task ? task->Result() : Entities();
    }

private:
    std::unique_ptr<Database::Task<Entities>> m_task;
};

} // namespace DataAccess::Context
