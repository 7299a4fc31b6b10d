#pragma once

#include "entities/cables/CablesExport.h"

#include <QJsonObject>
#include <QUuid>

namespace Cables::Entities::Interfaces {

/**
 * What every entity of the cable network offers through its interface. The object behind it is a
 * QOR::Entities::Entity too: a dynamic cast leads to its time stamp, its state and its observers.
 *
 * A pair of getter and setter shares one comment. A setter that changes a stored value makes a Normal entity Modified;
 * an equal value changes nothing. A reference has an id, which is stored, and an object, which is there once the
 * entities have been linked: setting the object sets the id too (null sets the null id), and setting an id that is not
 * the object's drops the object. Linking the object whose id is held already changes nothing that is stored. Of an
 * object that has no id yet the id is taken once it gets one, which is a change of the referring entity.
 *
 * Where a list, or a single place, and a reference face each other, an operation on one end sets the other end too: a
 * child is in the list of its parent and of no other one. Both ends of the link need to be owned by shared pointers.
 */
class CABLES_EXPORT INetworkEntity
{
public:
    virtual ~INetworkEntity() = default;
    INetworkEntity& operator=(const INetworkEntity&) = delete;

    /// Primary key; the null id means that the entity is not persisted.
    virtual const QUuid& Id() const = 0;

    /**
     * One member for each property, named like it with a small first letter: ids as text with braces, times and dates
     * as ISO text (times in UTC), bytes and images (PNG) as Base64 text. Null stands for what is not known: NaN, the
     * null id or text, no date, no image. Linked objects are left out, except that lists of children give the
     * children's ids.
     */
    virtual QJsonObject toJson() const = 0;

protected:
    INetworkEntity() = default;
    INetworkEntity(const INetworkEntity&) = default;
};

} // namespace Cables::Entities::Interfaces
