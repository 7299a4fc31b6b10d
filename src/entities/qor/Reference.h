#pragma once

#include "entities/qor/IObserver.h"
#include "entities/qor/QorEntityExport.h"

#include <QUuid>

#include <functional>
#include <memory>
#include <utility>

namespace QOR::Entities {

/// Waits until an entity that has no id yet gets one. A copy of this object does not wait.
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
    /// Waits for the same entity as @p other; stops waiting when that one does not wait.
    void awaitSameAs(const IdArrival& other, Callback arrived);
    /// Stops waiting.
    void stop();

private:
    class Observer;

    void awaitEntity(const std::shared_ptr<Interfaces::IEntity>& entity, Callback arrived);

    std::unique_ptr<Observer> m_observer;
};

/**
 * What an entity keeps of another one that it refers to: the id, which is stored, and the object, which it keeps alive,
 * once it is linked. An object that has no id yet gives it when it gets one.
 */
template <typename T>
class OwningReference
{
public:
    OwningReference() = default;
    OwningReference(const OwningReference& other)
        : m_id(other.m_id)
        , m_object(other.m_object)
    {
        m_arrival.awaitSameAs(other.m_arrival, [this](const QUuid& id) { m_id = id; });
    }
    ~OwningReference() = default;
    OwningReference& operator=(const OwningReference&) = delete;

    const QUuid& id() const { return m_id; }
    const std::shared_ptr<T>& object() const { return m_object; }

    /// Calls @p idArrived when @p object, which has no id yet, has got one.
    template <typename Callback>
    void set(const QUuid& id, std::shared_ptr<T> object, const Callback& idArrived)
    {
        m_id = id;
        m_object = std::move(object);
        m_arrival.stop();
        if (m_id.isNull() && m_object) {
            m_arrival.await(m_object, [this, idArrived](const QUuid& arrived) {
                m_id = arrived;
                idArrived();
            });
        }
    }

private:
    QUuid m_id;
    std::shared_ptr<T> m_object;
    IdArrival m_arrival;
};

/// The same for the parent, which lists the referring entity, keeps it alive, and tells it its id.
template <typename T>
class ParentReference
{
public:
    const QUuid& id() const { return m_id; }
    std::shared_ptr<T> object() const { return m_object.lock(); }

    template <typename Callback>
    void set(const QUuid& id, const std::shared_ptr<T>& object, const Callback& /*idArrived*/)
    {
        m_id = id;
        m_object = object;
    }

private:
    QUuid m_id;
    std::weak_ptr<T> m_object;
};

} // namespace QOR::Entities
