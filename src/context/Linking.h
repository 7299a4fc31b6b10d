#pragma once

#include "entities/qor/Entity.h"

#include <QDateTime>
#include <QHash>
#include <QUuid>

#include <algorithm>
#include <memory>
#include <tuple>
#include <vector>

/// How entities that know each other by id find each other.
namespace DataAccess::Context {

/// The entities by the id of the one that they belong to. Those that belong to none are left out.
template <typename T, typename ParentId>
QHash<QUuid, std::vector<std::shared_ptr<T>>> childrenByParent(const QHash<QUuid, std::shared_ptr<T>>& entities,
                                                               const ParentId& parentId)
{
    QHash<QUuid, std::vector<std::shared_ptr<T>>> children;
    for (const std::shared_ptr<T>& entity : entities) {
        const QUuid parent = parentId(*entity);
        if (!parent.isNull())
            children[parent].push_back(entity);
    }
    return children;
}

/// Whether @p parent lists @p child: not when it is marked deleted, nor a snapshot among live ones.
inline bool isListed(const QOR::Entities::Entity& child, const QOR::Entities::Entity& parent)
{
    return QOR::Entities::isListed(child.EntityState(), parent.EntityState());
}

/// Those of @p children that @p parent lists, in the order of @p isBefore.
template <typename Interface, typename T, typename Less>
std::vector<std::shared_ptr<Interface>> orderedChildren(std::vector<std::shared_ptr<T>>& children,
                                                        const QOR::Entities::Entity& parent, const Less& isBefore)
{
    std::sort(children.begin(), children.end(), isBefore);
    std::vector<std::shared_ptr<Interface>> listed;
    for (const std::shared_ptr<T>& child : children) {
        if (isListed(*child, parent))
            listed.push_back(child);
    }
    return listed;
}

/// Of the live entities that belong to one parent the one whose @p time is the latest.
template <typename T, typename ParentId, typename Time>
QHash<QUuid, std::shared_ptr<T>> latestByParent(const QHash<QUuid, std::shared_ptr<T>>& entities,
                                                const ParentId& parentId, const Time& time)
{
    using namespace QOR::Entities::Enumerations;
    // An unknown time is before all others, and one of two equal times is chosen alike on every run.
    const auto rank = [&time](const T& entity) {
        return std::make_tuple(time(entity).isValid(), time(entity), entity.Id());
    };
    QHash<QUuid, std::shared_ptr<T>> latest;
    for (const std::shared_ptr<T>& entity : entities) {
        const QUuid parent = parentId(*entity);
        if (parent.isNull() || entity->EntityState() == Deleted || entity->EntityState() == Snapshot)
            continue;
        std::shared_ptr<T>& soFar = latest[parent];
        if (!soFar || rank(*soFar) < rank(*entity))
            soFar = entity;
    }
    return latest;
}

} // namespace DataAccess::Context
