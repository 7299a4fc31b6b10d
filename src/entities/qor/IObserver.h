#pragma once

#include "entities/qor/QorEntityExport.h"

namespace QOR::Entities::Interfaces {

class IEntity;

/// Is told when an entity it is attached to has changed.
class QORENTITY_EXPORT IObserver
{
public:
    virtual ~IObserver();

    /**
     * Called after one property of @p entity got another value, on the thread that changed it. The observer may detach
     * itself or others here, and may change the entity, which notifies again.
     */
    virtual void changed(IEntity& entity) = 0;

protected:
    IObserver() = default;
    IObserver(const IObserver&) = default;
    IObserver& operator=(const IObserver&) = default;
};

} // namespace QOR::Entities::Interfaces
