#include "entities/qor/Entity.h"

#include "entities/qor/IObserver.h"

#include <algorithm>
#include <utility>

namespace QOR::Entities {

void Interfaces::IObserver::contentChanged(IEntity& /*entity*/)
{}
void Interfaces::IObserver::stateChanged(IEntity& /*entity*/)
{}
void Interfaces::IObserver::idChanged(IEntity& /*entity*/, const QUuid& /*former*/)
{}

Entity::Entity() = default;
Entity::~Entity() = default;

Entity::Entity(const Entity& other)
    : IEntity(other)
    , m_id(other.m_id)
    , m_timestamp(other.m_timestamp)
    , m_state(other.m_state)
    , m_selected(other.m_selected)
{}

const QUuid& Entity::Id() const
{
    return m_id;
}

void Entity::SetId(const QUuid& id)
{
    if (m_id == id)
        return;
    const QUuid former = std::exchange(m_id, id);
    tell([this, &former](Interfaces::IObserver& observer) { observer.idChanged(*this, former); });
    notify();
}

const QDateTime& Entity::Timestamp() const
{
    return m_timestamp;
}

void Entity::SetTimestamp(const QDateTime& timestamp)
{
    assignUnstored(m_timestamp, timestamp);
}

Enumerations::EntityState Entity::EntityState() const
{
    return m_state;
}

void Entity::SetEntityState(Enumerations::EntityState state)
{
    if (m_state == state)
        return;
    m_state = state;
    tell([this](Interfaces::IObserver& observer) { observer.stateChanged(*this); });
    notify();
}

bool Entity::Selected() const
{
    return m_selected;
}

void Entity::SetSelected(bool selected)
{
    assignUnstored(m_selected, selected);
}

void Entity::attach(Interfaces::IObserver* observer)
{
    if (observer != nullptr && !m_observers.contains(observer))
        m_observers.append(observer);
}

void Entity::detach(Interfaces::IObserver* observer)
{
    m_observers.erase(std::remove(m_observers.begin(), m_observers.end(), observer), m_observers.end());
}

void Entity::markModified()
{
    if (m_state == Enumerations::Normal)
        m_state = Enumerations::Modified;
    tell([this](Interfaces::IObserver& observer) { observer.contentChanged(*this); });
    notify();
}

void Entity::notify()
{
    tell([this](Interfaces::IObserver& observer) { observer.changed(*this); });
}

template <typename Call>
void Entity::tell(const Call& call)
{
    if (m_observers.isEmpty())
        return;
    // An observer may detach itself or another one while it is told: only who is still attached is called.
    const auto told = m_observers;
    for (Interfaces::IObserver* observer : told) {
        if (m_observers.contains(observer))
            call(*observer);
    }
}

bool isListed(Enumerations::EntityState child, Enumerations::EntityState parent)
{
    using namespace Enumerations;
    return child != Deleted && (child != Snapshot || parent == Snapshot);
}

} // namespace QOR::Entities
