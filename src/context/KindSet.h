#pragma once

#include "context/EntityHashes.h"
#include "context/EntityKind.h"

namespace DataAccess::Context {

/// The kinds of entities of a context: @p ForEachKind names them.
template <template <template <typename> class> class ForEachKind>
class KindSet
{
public:
    using Hashes = EntityHashes<ForEachKind<EntitiesById>>;
    using Attached = QHash<QUuid, std::shared_ptr<QOR::Entities::Entity>>;

    template <typename T>
    EntityKind<T>& of()
    {
        return std::get<EntityKind<T>>(m_kinds);
    }

    /// Calls @p visitor with each kind.
    template <typename Visitor>
    void forEach(const Visitor& visitor)
    {
        std::apply([&visitor](auto&... kind) { (visitor(kind), ...); }, m_kinds);
    }

    /// The entities of one kind that have a row, without those marked deleted since they were loaded, and those of
    /// @p added.
    template <typename T>
    EntitiesById<T> known(const Attached& added)
    {
        EntitiesById<T> entities = of<T>().shown();
        for (const auto& entity : added) {
            if (const auto ofKind = std::dynamic_pointer_cast<T>(entity))
                entities.insert(ofKind->Id(), ofKind);
        }
        return entities;
    }
    /// The same of all kinds.
    Hashes known(const Attached& added)
    {
        Hashes hashes;
        hashes.visit([&](auto& entities) { entities = known<EntityOf<decltype(entities)>>(added); });
        return hashes;
    }

private:
    ForEachKind<EntityKind> m_kinds;
};

} // namespace DataAccess::Context
