#pragma once

#include "entities/qor/EntityState.h"
#include "entities/qor/QorEntityExport.h"

#include <QDateTime>
#include <QUuid>

namespace QOR::Entities::Interfaces {

class IObserver;

/// What every stored object has: an identity, a time of last change, a life-cycle state, a selection flag, observers.
class QORENTITY_EXPORT IEntity
{
public:
    virtual ~IEntity() = default;

    /// Primary key; the null id means that the entity is not persisted.
    virtual const QUuid& Id() const = 0;
    virtual void SetId(const QUuid& id) = 0;

    /// Time of the last write to the database, UTC.
    virtual const QDateTime& Timestamp() const = 0;
    virtual void SetTimestamp(const QDateTime& timestamp) = 0;

    virtual Enumerations::EntityState EntityState() const = 0;
    virtual void SetEntityState(Enumerations::EntityState state) = 0;

    /// Selection flag for a user interface; never stored.
    virtual bool Selected() const = 0;
    virtual void SetSelected(bool selected) = 0;

    /// Registers @p observer, which must detach before it ends. Null and an observer already attached change nothing.
    virtual void attach(IObserver* observer) = 0;
    /// Removes @p observer; one that is not attached changes nothing.
    virtual void detach(IObserver* observer) = 0;

protected:
    IEntity() = default;
    IEntity(const IEntity&) = default;
    IEntity& operator=(const IEntity&) = default;
};

} // namespace QOR::Entities::Interfaces
