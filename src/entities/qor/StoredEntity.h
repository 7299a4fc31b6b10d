#pragma once

#include "entities/qor/Entity.h"
#include "entities/qor/JsonValues.h"

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
    QJsonObject toJson() const override { return entityToJson(*this); }

protected:
    StoredEntity() = default;
    StoredEntity(const StoredEntity&) = default;

    /// Gives a reference another id; an object that has not this id is dropped.
    template <typename ReferenceType>
    void assignReferenceId(ReferenceType& reference, const QUuid& id)
    {
        auto object = reference.object();
        if (object && object->Id() != id)
            object.reset();
        assignReference(reference, id, std::move(object));
    }

    /// Gives a reference another object, and the object's id; null gives the null id.
    template <typename ReferenceType, typename T>
    void assignReferenceObject(ReferenceType& reference, std::shared_ptr<T> object)
    {
        const QUuid id = object ? object->Id() : QUuid();
        assignReference(reference, id, std::move(object));
    }

private:
    template <typename ReferenceType, typename T>
    void assignReference(ReferenceType& reference, const QUuid id, std::shared_ptr<T> object)
    {
        const bool storedChanges = reference.id() != id;
        if (!storedChanges && reference.object() == object)
            return;
        reference.set(id, std::move(object));
        if (storedChanges)
            markModified();
        else
            notify();
    }
};

} // namespace QOR::Entities
