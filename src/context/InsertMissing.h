#pragma once

#include "repositories/IRepository.h"

#include <QHash>

#include <memory>
#include <vector>

namespace DataAccess::Context {

/// Inserts those of @p entities whose ids @p repository, which may be null, does not have. Rows that are there stay.
template <typename T>
void insertMissing(const std::shared_ptr<Interfaces::IRepository<T>>& repository,
                   const std::vector<std::shared_ptr<T>>& entities)
{
    if (!repository)
        return;
    const auto stored = repository->GetAll();
    std::vector<std::shared_ptr<T>> missing;
    for (const std::shared_ptr<T>& entity : entities) {
        if (!stored.contains(entity->Id()))
            missing.push_back(entity);
    }
    if (!missing.empty())
        repository->Insert(missing);
}

} // namespace DataAccess::Context
