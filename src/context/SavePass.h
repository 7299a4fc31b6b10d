#pragma once

#include "entities/qor/Entity.h"

#include <QHash>
#include <QUuid>

#include <memory>
#include <unordered_set>
#include <vector>

namespace DataAccess::Context {

/// One save of a context: the attached entities that the kinds have to look at, and those that could not be written.
class SavePass
{
public:
    using EntityPointer = std::shared_ptr<QOR::Entities::Entity>;

    /// @p attached must outlive the pass.
    explicit SavePass(const QHash<QUuid, EntityPointer>& attached)
        : m_attached(attached)
    {}

    void addCandidate(const EntityPointer& entity) { m_candidates.push_back(entity); }
    const std::vector<EntityPointer>& candidates() const { return m_candidates; }

    /// What is attached under @p id; null when nothing is.
    EntityPointer attached(const QUuid& id) const { return m_attached.value(id); }

    void fail(const QOR::Entities::Entity& entity) { m_failed.insert(&entity); }
    bool hasFailed(const QOR::Entities::Entity& entity) const { return m_failed.count(&entity) > 0; }
    std::size_t failures() const { return m_failed.size(); }

private:
    const QHash<QUuid, EntityPointer>& m_attached;
    std::vector<EntityPointer> m_candidates;
    std::unordered_set<const QOR::Entities::Entity*> m_failed;
};

} // namespace DataAccess::Context
