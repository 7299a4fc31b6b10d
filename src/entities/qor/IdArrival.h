#pragma once

#include "entities/qor/IObserver.h"
#include "entities/qor/QorEntityExport.h"

#include <QUuid>

#include <functional>
#include <memory>
#include <utility>

namespace QOR::Entities {

/// Waits for an entity that has no id yet. A copy waits for nothing.
class QORENTITY_EXPORT IdArrival
{
public:
    using Callback = std::function<void(const QUuid&)>;

    IdArrival();
    ~IdArrival();
    IdArrival(const IdArrival& other);
    IdArrival(IdArrival&& other) noexcept;
    IdArrival& operator=(const IdArrival& other) = delete;
    IdArrival& operator=(IdArrival&& other) noexcept;

    /// Calls @p arrived with the id once @p object, any interface of an entity, has got one.
    template <typename T>
    void await(const std::shared_ptr<T>& object, Callback arrived)
    {
        awaitEntity(std::dynamic_pointer_cast<Interfaces::IEntity>(object), std::move(arrived));
    }
    /// Waits for what @p other waits for; no longer when that is nothing.
    void awaitSameAs(const IdArrival& other, Callback arrived);
    /// Waits no longer.
    void stop();

private:
    class Observer;

    void awaitEntity(const std::shared_ptr<Interfaces::IEntity>& entity, Callback arrived);

    std::unique_ptr<Observer> m_observer;
};

} // namespace QOR::Entities
