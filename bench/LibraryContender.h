#pragma once

#include "bench/Contender.h"
#include "support/RunningWorker.h"

namespace Bench {

/// The library's public repository.
template <typename Kind>
class LibraryContender final : public Contender<typename Kind::Entity>
{
public:
    using Entity = typename Kind::Entity;
    using typename Contender<Entity>::Objects;

    explicit LibraryContender(const std::shared_ptr<DataAccess::Interfaces::IConfig>& config)
        : m_worker(config)
        , m_repository(m_worker.get(), DataAccess::Enumerations::Complete, nullptr)
    {}

    Objects load() override { return m_repository.GetAll(); }
    void insert(const List<Entity>& entities) override { require(m_repository.Insert(entities)); }
    void update(const List<Entity>& entities) override { require(m_repository.Update(entities)); }
    void remove(const List<Entity>& entities) override { require(m_repository.Remove(entities)); }
    /// Marks rows deleted in one transaction.
    void softDelete(const List<Entity>& entities) { require(m_repository.Delete(entities)); }
    unsigned int count() { return m_repository.Count(); }

    /// Queues all reads, and then waits.
    List<Entity> get(const std::vector<QUuid>& ids) override
    {
        using Task = DataAccess::Database::Task<std::shared_ptr<Entity>>;
        std::vector<std::unique_ptr<Task>> tasks;
        tasks.reserve(ids.size());
        for (const QUuid& id : ids)
            tasks.emplace_back(m_repository.GetByIdAsync(id));
        // The worker runs them in order: nobody need be woken for each.
        if (!tasks.empty())
            tasks.back()->Wait();
        List<Entity> entities;
        for (const auto& task : tasks)
            entities.push_back(task->Result());
        return entities;
    }

    List<Entity> getEach(const std::vector<QUuid>& ids) override
    {
        List<Entity> entities;
        for (const QUuid& id : ids)
            entities.push_back(m_repository.GetById(id));
        return entities;
    }

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
