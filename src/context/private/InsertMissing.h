#pragma once

#include "context/private/Loading.h"

#include <QHash>

#include <memory>
#include <vector>

namespace DataAccess::Context {

/// Inserts those of @p entities, of the kind called @p kind, whose ids @p repository, which may be null, does not have.
/// Rows that are there stay. False when the database is out of reach.
template <typename T>
bool insertMissing(const char* kind, const std::shared_ptr<Interfaces::IRepository<T>>& repository,
                   const std::vector<std::shared_ptr<T>>& entities)
{
    if (!repository)
        return true;
    const Database::FailureWatch watch;
    const auto stored = guarded(Q_FUNC_INFO, [&] { return repository->GetAll(); });
    std::vector<std::shared_ptr<T>> missing;
    for (const std::shared_ptr<T>& entity : entities) {
        if (!stored.contains(entity->Id()))
            missing.push_back(entity);
    }
    if (!watch.failed() && !missing.empty())
        guarded(Q_FUNC_INFO, [&] { return repository->Insert(missing); });
    if (watch.failed())
        qCWarning(lcContext).noquote() << "The default types are not stored:" << failureText(kind, watch);
    return !watch.isUnavailable();
}

} // namespace DataAccess::Context
