#pragma once

#include "entities/qor/QorEntityExport.h"

#include <QUuid>

namespace QOR::Entities::Interfaces {

class IEntity;

/**
 * Is notified when an entity that it is attached to has changed. An observer that needs to know what has changed
 * overrides the last three operations; at most one of them is called, before changed().
 */
class QORENTITY_EXPORT IObserver
{
public:
    virtual ~IObserver() = default;

    /**
     * Called after one property of @p entity got another value, on the thread that changed it. The observer may detach
     * itself or others here, and may change the entity, which notifies again.
     */
    virtual void changed(IEntity& entity) = 0;

    /// A stored property has another value.
    virtual void contentChanged(IEntity& entity);
    /// The entity was given another state; not when contentChanged() is called, which may imply it.
    virtual void stateChanged(IEntity& entity);
    /// The entity stands for another row than that of @p former.
    virtual void idChanged(IEntity& entity, const QUuid& former);

protected:
    IObserver() = default;
    IObserver(const IObserver&) = default;
    IObserver& operator=(const IObserver&) = default;
};

} // namespace QOR::Entities::Interfaces
