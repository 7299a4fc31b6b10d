#pragma once

#include "context/private/Networks.h"

#include <typeinfo>
#include <utility>

namespace DataAccess::Context {

/// The ledger of the kinds of @p Network, an EntityHashes. Entities of other kinds are known, and never stored.
template <typename Network>
class KindLedger final : public EntityLedger
{
public:
    /// All entities that have an id, those included that were saved as deleted.
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

    /// Adds all rows of one kind, which a load has read. What is known here stays.
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
            receive(row, false);
    }

    /// Puts some rows of one kind, which were read anew, in the place of what is known of them, except where there are
    /// changes that were not saved.
    template <typename T>
    void merge(const EntitiesById<T>& rows)
    {
        followIds();
        for (const std::shared_ptr<T>& row : rows)
            receive(row, true);
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

    void visitBonds(const EntityPointer& entity, const BondVisitor& visit) const override
    {
        withKindOf(*this, entity,
                   [&visit](const auto& /*entities*/, const auto& typed) { Context::visitBonds(*typed, visit); });
    }

    /// Calls @p visitor with the entities of the kind of @p entity and with itself.
    template <typename Self, typename Visitor>
    static void withKindOf(Self& self, const EntityPointer& entity, const Visitor& visitor)
    {
        bool isFound = false;
        const Entity& object = *entity;
        const auto visitIf = [&](auto& entities, bool isCandidate) {
            using T = EntityOf<decltype(entities)>;
            const auto typed = !isFound && isCandidate ? std::dynamic_pointer_cast<T>(entity) : nullptr;
            if (!typed)
                return;
            isFound = true;
            visitor(entities, typed);
        };
        // A failed cast takes much longer than this comparison, and only applications derive from the classes.
        self.m_network.visit(
            [&](auto& entities) { visitIf(entities, typeid(object) == typeid(EntityOf<decltype(entities)>)); });
        self.m_network.visit([&](auto& entities) { visitIf(entities, true); });
        if (!isFound)
            visitor(self.m_others, entity);
    }

    Network m_network;
    EntitiesById<Entity> m_others;
};

} // namespace DataAccess::Context
