#pragma once

#include "entities/pd/PDExport.h"

#include <QJsonObject>
#include <QUuid>

namespace PD::Entities::Interfaces {

/**
 * What every entity of the partial-discharge data offers through its interface. The object behind it is a
 * QOR::Entities::Entity too: a dynamic cast leads to its time stamp, its state and its observers.
 *
 * A pair of getter and setter shares one comment. Numbers that are not known are NaN, the default of every `double`. A
 * setter that changes a stored value makes a Normal entity Modified; an equal value changes nothing. A reference has an
 * id, which is stored, and an object, which is there once the entities have been linked: setting the object sets the id
 * too (null sets the null id), and setting an id that is not the object's drops the object. Linking the object whose id
 * is held already changes nothing that is stored. Of an object that has no id yet the id is taken once it gets one,
 * which is a change of the referring entity.
 *
 * A link of an owner and a child has two ends, and an operation on one sets the other one too: a child that is given to
 * an owner gets the owner's id and leaves its former owner; one that is taken away belongs to none. Lists leave out
 * null and repeated entries. A child without a shared pointer that owns it is not listed.
 */
class PD_EXPORT IPdEntity
{
public:
    virtual ~IPdEntity() = default;
    IPdEntity& operator=(const IPdEntity&) = delete;

    /// Primary key; the null id means that the entity is not persisted.
    virtual const QUuid& Id() const = 0;

    /**
     * One member for each property, named like it with a small first letter: ids as text with braces, times as
     * ISO text, bytes as Base64 text. Null stands for what is not known: NaN, the null id or text, no time.
     * Linked objects are left out, except that lists of children give the children's ids.
     */
    virtual QJsonObject toJson() const = 0;

protected:
    IPdEntity() = default;
    IPdEntity(const IPdEntity&) = default;
};

} // namespace PD::Entities::Interfaces
