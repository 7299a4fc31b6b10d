#pragma once

#include "bench/Contender.h"
#include "support/RunningWorker.h"

namespace Bench {

/// The library's public repository.
template <typename Kind>
class LibraryContender final : public Contender<Kind>
{
public:
    using typename Contender<Kind>::Entities;
    using typename Contender<Kind>::List;

    explicit LibraryContender(const std::shared_ptr<DataAccess::Interfaces::IConfig>& config)
        : m_worker(config)
        , m_repository(m_worker.get(), DataAccess::Enumerations::Complete, nullptr)
    {}

    Entities load() override { return m_repository.GetAll(); }
    void insert(const List& entities) override { require(m_repository.Insert(entities)); }
    void update(const List& entities) override { require(m_repository.Update(entities)); }
    List get(const std::vector<QUuid>& ids) override
    {
        using Task = DataAccess::Database::Task<std::shared_ptr<typename Kind::Entity>>;
        std::vector<std::unique_ptr<Task>> tasks;
        tasks.reserve(ids.size());
        for (const QUuid& id : ids)
            tasks.emplace_back(m_repository.GetByIdAsync(id));
        // The worker runs them in order: nobody need be woken for each.
        if (!tasks.empty())
            tasks.back()->Wait();
        List entities;
        for (const auto& task : tasks)
            entities.push_back(task->Result());
        return entities;
    }
    void softDelete(const List& entities) override { require(m_repository.Delete(entities)); }
    void remove(const List& entities) override { require(m_repository.Remove(entities)); }
    unsigned int count() override { return m_repository.Count(); }

private:
    static void require(bool done)
    {
        if (!done)
            qFatal("The repository of %s refused", Kind::table);
    }

    TestSupport::RunningWorker m_worker;
    typename Kind::Repository m_repository;
};

} // namespace Bench
