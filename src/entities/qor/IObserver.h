#pragma once

#include "entities/qor/QorEntityExport.h"

#include <QUuid>

namespace QOR::Entities::Interfaces {

class IEntity;

/**
 * Is told when an entity it is attached to has changed. Who must tell what is stored with the entity from what is not
 * overrides the last three operations, which are called before changed(), or else not at all.
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
