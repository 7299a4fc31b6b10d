#pragma once

#include "entities/qor/Entity.h"
#include "entities/qor/Properties.h"

#include <memory>
#include <utility>

namespace QOR::Entities {

/**
 * What the entities of all families share: an entity that is reached through @p Interface, and the rules for its
 * references. A copy has the values and refers to the same objects; its children still belong to the original.
 */
template <typename Interface>
class QORENTITY_EXPORT StoredEntity : public Entity, public Interface
{
public:
    const QUuid& Id() const override { return Entity::Id(); }

protected:
    StoredEntity() = default;
    StoredEntity(const StoredEntity&) = default;

    /// Gives a reference another id; an object that has not this id is dropped.
    template <typename ReferenceType>
    void assignReferenceId(ReferenceType& reference, const QUuid& id)
    {
        assignReference(reference, id, objectOfId(reference, id));
    }

    /// Gives a reference another object, and the object's id; null gives the null id.
    template <typename ReferenceType, typename T>
    void assignReferenceObject(ReferenceType& reference, std::shared_ptr<T> object)
    {
        const QUuid id = object ? object->Id() : QUuid();
        assignReference(reference, id, std::move(object));
    }

    /// Points a reference at the object that has its id, or at none. Nothing that is stored changes, neither here nor
    /// at the object.
    template <typename ReferenceType, typename T>
    void linkReference(ReferenceType& reference, std::shared_ptr<T> object)
    {
        if (reference.object() == object)
            return;
        setReference(reference, reference.id(), std::move(object));
        notify();
    }

    /**
     * The same as assignReferenceId() for a reference whose other end is held by the object: calls @p leave with the
     * object that is let go of.
     */
    template <typename ReferenceType, typename Leave>
    void assignTwoEndedId(ReferenceType& reference, const QUuid& id, const Leave& leave)
    {
        assignTwoEnded(reference, id, objectOfId(reference, id), leave, [](auto& /*object*/) {});
    }

    /// The same as assignReferenceObject(); calls @p join with the object then, so that it sets its end too.
    template <typename ReferenceType, typename T, typename Leave, typename Join>
    void assignTwoEndedObject(ReferenceType& reference, std::shared_ptr<T> object, const Leave& leave, const Join& join)
    {
        const QUuid id = object ? object->Id() : QUuid();
        assignTwoEnded(reference, id, std::move(object), leave, join);
    }

    /// Whether @p parent is to list this entity: not one marked deleted, nor a snapshot among live ones.
    template <typename Parent>
    bool isListedBy(const Parent& parent) const
    {
        const auto* entity = dynamic_cast<const Interfaces::IEntity*>(&parent);
        return isListed(EntityState(), entity ? entity->EntityState() : Enumerations::Normal);
    }

private:
    template <typename ReferenceType>
    static auto objectOfId(const ReferenceType& reference, const QUuid& id)
    {
        auto object = reference.object();
        if (object && object->Id() != id)
            object.reset();
        return object;
    }

    template <typename ReferenceType, typename T>
    void setReference(ReferenceType& reference, const QUuid& id, std::shared_ptr<T> object)
    {
        reference.set(id, std::move(object), [this] { markModified(); });
    }

    template <typename ReferenceType, typename T>
    void assignReference(ReferenceType& reference, const QUuid& id, std::shared_ptr<T> object)
    {
        const auto nobody = [](auto& /*object*/) {};
        assignTwoEnded(reference, id, std::move(object), nobody, nobody);
    }

    /// The observers of this entity are told when both ends are set.
    template <typename ReferenceType, typename T, typename Leave, typename Join>
    void assignTwoEnded(ReferenceType& reference, const QUuid id, const std::shared_ptr<T> object, const Leave& leave,
                        const Join& join)
    {
        const std::shared_ptr<T> former = reference.object();
        const bool storedChanges = reference.id() != id;
        const bool moves = former != object;
        if (storedChanges || moves)
            setReference(reference, id, object);
        if (former && moves)
            leave(*former);
        if (object)
            join(*object);
        if (storedChanges)
            markModified();
        else if (moves)
            notify();
    }
};

} // namespace QOR::Entities
