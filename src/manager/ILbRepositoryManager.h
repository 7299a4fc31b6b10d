#pragma once

#include "entities/lb/CablebookMeasure.h"
#include "repositories/IRepository.h"

#include <memory>

namespace DataAccess::Interfaces {

/// The repository of the cable book's measures, plain and behind a cache.
class DATAACCESS_EXPORT ILbRepositoryManager
{
public:
    /// A repository of measures, plain or behind a cache.
    using Measures = IRepository<LB::Entities::CablebookMeasure>;

    virtual ~ILbRepositoryManager();

    // Applications rely on the order of these.
    /// The repository, which always asks the database; null until one has been set.
    virtual std::shared_ptr<Measures> CablebookMeasuresRepository() const = 0;
    /// The view that caches what it has read; null until a repository has been set.
    virtual std::shared_ptr<Measures> CablebookMeasuresRepositoryCached() const = 0;
    /// Sets the repository, with a new, empty view; the one already set keeps its view and what that has cached.
    virtual void SetCablebookMeasuresRepository(const std::shared_ptr<Measures>& repository) = 0;

protected:
    ILbRepositoryManager() = default;
    ILbRepositoryManager(const ILbRepositoryManager&) = default;
    ILbRepositoryManager& operator=(const ILbRepositoryManager&) = default;
};

} // namespace DataAccess::Interfaces
