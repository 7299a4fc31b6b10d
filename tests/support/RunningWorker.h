#pragma once

#include "database/DbWorker.h"
#include "database/Task.h"

#include <QThread>

#include <memory>
#include <type_traits>

namespace TestSupport {

/// A worker whose thread runs; stopped and joined with the object.
class RunningWorker
{
public:
    explicit RunningWorker(const std::shared_ptr<DataAccess::Interfaces::IConfig>& config);
    ~RunningWorker();
    RunningWorker(const RunningWorker&) = delete;
    RunningWorker& operator=(const RunningWorker&) = delete;

    DataAccess::Database::DbWorker* get() const { return m_worker.get(); }
    QThread& thread() { return m_thread; }

    /// Runs @p job on the worker and returns its result, or throws what it threw.
    template <typename Function>
    auto run(Function job)
    {
        using Result = std::invoke_result_t<Function, DataAccess::Interfaces::IDatabase&>;
        if constexpr (std::is_void_v<Result>) {
            run([&](DataAccess::Interfaces::IDatabase& db) {
                job(db);
                return true;
            });
        } else {
            DataAccess::Database::Task<Result> task(std::move(job));
            m_worker->insert(task.toJob());
            return task.Result();
        }
    }

private:
    QThread m_thread;
    std::unique_ptr<DataAccess::Database::DbWorker> m_worker;
};

} // namespace TestSupport
