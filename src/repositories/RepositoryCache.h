#pragma once

#include "database/Failure.h"
#include "entities/qor/EntityState.h"
#include "repositories/ICachedRepository.h"

#include <memory>
#include <mutex>
#include <stdexcept>
#include <utility>

namespace DataAccess::Repositories {

/// Warns and reports that @p function of a cache finds no repository behind the cache, or one of another kind than it
/// needs.
DATAACCESS_EXPORT void warnOfUnsuitableRepository(const char* function);

/**
 * Keeps the entities that pass through the synchronous operations of a repository. All readers share the objects: what
 * one changes in an entity the others see, though it is not stored.
 *
 * The synchronous operations may be called from any thread but the worker's; they run one after the other, each under
 * the lock for its whole run. An observer of an entity must therefore not call the cache back. One that throws leaves
 * the cache as it was; Reload() leaves it empty then. What a read gives that reports a failure is handed out, but never
 * kept: it may be a part, or nothing, of what is there. The asynchronous operations go straight to the repository and
 * leave the cache alone: after writing that way, call Reload() or Wipe().
 *
 * The repository is shared. Without one, reads find nothing, writes are false, and the asynchronous operations throw
 * std::invalid_argument.
 */
template <typename T>
class DATAACCESS_EXPORT RepositoryCache : public Interfaces::ICachedRepository<T>
{
public:
    /// See IRepository.
    using IRepository = Interfaces::IRepository<T>;
    /// See IRepository.
    using Entities = typename IRepository::Entities;
    /// See IRepository.
    using EntityList = typename IRepository::EntityList;
    /// See IRepository.
    template <typename Result>
    using Task = Database::Task<Result>;

    /// Shares @p repository, which may be null. Reads nothing yet.
    explicit RepositoryCache(const std::shared_ptr<IRepository>& repository)
        : m_repository(repository)
    {}
    RepositoryCache(const RepositoryCache&) = delete;
    RepositoryCache& operator=(const RepositoryCache&) = delete;
    ~RepositoryCache() override = default;

    /// Returns what is cached; reads the table only when that is nothing. An id that was not found has a null entity.
    Entities GetAll() override
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_cache.isEmpty() && m_repository) {
            const Database::FailureWatch watch;
            Entities all = m_repository->GetAll();
            if (watch.failed())
                return all;
            replace(std::move(all));
        }
        m_handedOut = true;
        return m_cache;
    }

    /// Returns the entity of @p id, and remembers also that there is none.
    std::shared_ptr<T> GetById(QUuid id) override
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto known = m_cache.constFind(id);
        if (known != m_cache.constEnd())
            return *known;
        if (!m_repository)
            return nullptr;
        const Database::FailureWatch watch;
        std::shared_ptr<T> entity = m_repository->GetById(id);
        if (!watch.failed())
            changeable().insert(id, entity);
        return entity;
    }

    /// Writes new rows, and keeps the entities.
    bool Insert(EntityList entities) override
    {
        return write(&IRepository::Insert, entities, [this](const std::shared_ptr<T>& entity) { cache(entity); });
    }

    /// Writes existing rows, and keeps the entities.
    bool Update(EntityList entities) override
    {
        return write(&IRepository::Update, entities, [this](const std::shared_ptr<T>& entity) { cache(entity); });
    }

    /// Marks rows deleted; the entities stay in the cache, and are Deleted there.
    bool Delete(EntityList entities) override
    {
        return write(&IRepository::Delete, entities, [this](const std::shared_ptr<T>& entity) {
            entity->SetEntityState(QOR::Entities::Enumerations::Deleted);
            cache(entity);
        });
    }

    /// Deletes rows, and forgets the entities.
    bool Remove(EntityList entities) override
    {
        return write(&IRepository::Remove, entities, [this](const std::shared_ptr<T>& entity) { remove(entity); });
    }

    /// The number of rows of the table, not of what is cached.
    unsigned int Count() override
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_repository ? m_repository->Count() : 0;
    }

    /// See ICachedRepository.
    void Reload() override
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        replace({});
        if (!m_repository)
            return;
        const Database::FailureWatch watch;
        Entities all = m_repository->GetAll();
        if (!watch.failed())
            replace(std::move(all));
    }

    /// See ICachedRepository.
    void Wipe() override
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        replace({});
    }

    /// Asks the repository, and leaves the cache alone.
    Task<Entities>* GetAllAsync() override { return repository().GetAllAsync(); }
    Task<std::shared_ptr<T>>* GetByIdAsync(QUuid id) override { return repository().GetByIdAsync(id); }
    Task<bool>* InsertAsync(EntityList entities) override { return repository().InsertAsync(std::move(entities)); }
    Task<bool>* UpdateAsync(EntityList entities) override { return repository().UpdateAsync(std::move(entities)); }
    Task<bool>* DeleteAsync(EntityList entities) override { return repository().DeleteAsync(std::move(entities)); }
    Task<bool>* RemoveAsync(EntityList entities) override { return repository().RemoveAsync(std::move(entities)); }
    Task<unsigned int>* CountAsync() override { return repository().CountAsync(); }

protected:
    // These three are called from within ask() and searchOrAsk(), which hold the lock.

    /// Puts @p entity into the cache, in place of another of its id.
    void cache(const std::shared_ptr<T>& entity) { changeable().insert(entity->Id(), entity); }
    /// Whether the cache has an entry for the id of @p entity.
    bool cached(const std::shared_ptr<T>& entity) const { return m_cache.contains(entity->Id()); }
    /// Takes the entry for the id of @p entity out of the cache.
    void remove(const std::shared_ptr<T>& entity) { changeable().remove(entity->Id()); }

    /**
     * Calls @p query with the repository, and caches what it returns. When the repository is not a @p Concrete, logs a
     * warning on behalf of @p function and returns nothing.
     */
    template <typename Concrete, typename Query>
    Entities ask(const Query& query, const char* function)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return askLocked<Concrete>(query, function);
    }

    /// The cached entities that @p matches accepts; if there is none, what ask() gives.
    template <typename Concrete, typename Matches, typename Query>
    Entities searchOrAsk(const Matches& matches, const Query& query, const char* function)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        Entities found;
        for (auto entry = m_cache.constBegin(); entry != m_cache.constEnd(); ++entry) {
            if (*entry && matches(**entry))
                found.insert(entry.key(), *entry);
        }
        return found.isEmpty() ? askLocked<Concrete>(query, function) : found;
    }

private:
    IRepository& repository() const
    {
        if (!m_repository)
            throw std::invalid_argument("repository nullptr");
        return *m_repository;
    }

    void replace(Entities entities)
    {
        m_cache = std::move(entities);
        m_handedOut = false;
    }

    /**
     * The cache, for a change. What GetAll() has handed out is never changed in place, not even when its readers have
     * let go of it: a container of Qt finds that out without waiting for what they did before.
     */
    Entities& changeable()
    {
        if (m_handedOut) {
            Entities copy = m_cache;
            copy.detach();
            replace(std::move(copy));
        }
        return m_cache;
    }

    /// Calls @p operation of the repository, and @p follow for each entity that it has written.
    template <typename Follow>
    bool write(bool (IRepository::*operation)(EntityList), const EntityList& entities, const Follow& follow)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_repository)
            warnOfUnsuitableRepository(Q_FUNC_INFO);
        if (!m_repository || !((*m_repository).*operation)(entities))
            return false;
        for (const std::shared_ptr<T>& entity : entities) {
            if (entity)
                follow(entity);
        }
        return true;
    }

    template <typename Concrete, typename Query>
    Entities askLocked(const Query& query, const char* function)
    {
        const auto concrete = std::dynamic_pointer_cast<Concrete>(m_repository);
        if (!concrete) {
            warnOfUnsuitableRepository(function);
            return {};
        }
        const Database::FailureWatch watch;
        Entities found = query(*concrete);
        if (watch.failed())
            return found;
        for (const std::shared_ptr<T>& entity : std::as_const(found))
            cache(entity);
        return found;
    }

    std::shared_ptr<IRepository> m_repository;
    Entities m_cache;
    bool m_handedOut = false;
    std::mutex m_mutex;
};

} // namespace DataAccess::Repositories
