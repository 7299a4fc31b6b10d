#pragma once

#include "context/EntityHashes.h"
#include "context/EntityLedger.h"

#include <utility>

namespace DataAccess::Context {

/// The ledger of the kinds that @p ForEachKind names. Entities of other kinds are known, and never stored.
template <template <template <typename> class> class ForEachKind>
class KindLedger final : public EntityLedger
{
public:
    using Network = EntityHashes<ForEachKind<EntitiesById>>;

    /// All that have an id; also those that were saved as deleted.
    Network& network() { return m_network; }

    /// The entities of one kind, without those that were saved as deleted.
    template <typename T>
    EntitiesById<T> shown()
    {
        followIds();
        EntitiesById<T> entities = m_network.template of<T>();
        for (const Entity* entity : hidden()) {
            const auto filed = qAsConst(entities).constFind(entity->Id());
            if (find(*entity)->mark == QOR::Entities::Enumerations::Deleted && filed != entities.cend() &&
                filed->get() == entity)
                entities.remove(entity->Id());
        }
        return entities;
    }

    /// Takes all rows of one kind. What is known here stays.
    template <typename T>
    void load(EntitiesById<T> rows)
    {
        followIds();
        EntitiesById<T>& known = m_network.template of<T>();
        if (known.isEmpty()) {
            known = std::move(rows);
            for (const std::shared_ptr<T>& entity : qAsConst(known))
                noteLoaded(entity);
            return;
        }
        for (const std::shared_ptr<T>& row : qAsConst(rows))
            take(row, false);
    }

    /// Takes some rows of one kind, which were read anew, except where there are changes that were not saved.
    template <typename T>
    void merge(const EntitiesById<T>& rows)
    {
        followIds();
        for (const std::shared_ptr<T>& row : rows)
            take(row, true);
    }

private:
    std::vector<EntityPointer> filedUnder(const QUuid& id) const override
    {
        std::vector<EntityPointer> filed;
        const auto add = [&](const auto& entities) {
            if (const auto entity = entities.value(id))
                filed.push_back(entity);
        };
        m_network.visit(add);
        add(m_others);
        return filed;
    }

    EntityPointer filedInPlaceOf(const EntityPointer& entity) const override
    {
        EntityPointer filed;
        withKindOf(*this, entity, [&](const auto& entities, const auto&) { filed = entities.value(entity->Id()); });
        return filed;
    }

    void file(const EntityPointer& entity) override
    {
        withKindOf(*this, entity, [](auto& entities, const auto& typed) { entities.insert(typed->Id(), typed); });
    }

    void unfile(const EntityPointer& entity, const QUuid& id) override
    {
        withKindOf(*this, entity, [&id](auto& entities, const auto& typed) {
            if (entities.value(id) == typed)
                entities.remove(id);
        });
    }

    void unfileAll() override
    {
        m_network.visit([](auto& entities) { entities.clear(); });
        m_others.clear();
    }

    /// Calls @p visitor with the entities of the kind of @p entity and with itself.
    template <typename Self, typename Visitor>
    static void withKindOf(Self& self, const EntityPointer& entity, const Visitor& visitor)
    {
        bool isFound = false;
        self.m_network.visit([&](auto& entities) {
            if (isFound)
                return;
            if (const auto typed = std::dynamic_pointer_cast<EntityOf<decltype(entities)>>(entity)) {
                isFound = true;
                visitor(entities, typed);
            }
        });
        if (!isFound)
            visitor(self.m_others, entity);
    }

    Network m_network;
    EntitiesById<Entity> m_others;
};

/// No kinds at all.
template <template <typename> class X>
using NoKinds = std::tuple<>;

} // namespace DataAccess::Context
