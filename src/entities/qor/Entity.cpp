#include "entities/qor/Entity.h"

#include "entities/qor/IObserver.h"

#include <algorithm>

namespace QOR::Entities {

Interfaces::IEntity::~IEntity() = default;
Interfaces::IObserver::~IObserver() = default;

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
    assignUnstored(m_id, id);
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
    assignUnstored(m_state, state);
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
    if (observer != nullptr && std::find(m_observers.begin(), m_observers.end(), observer) == m_observers.end())
        m_observers.push_back(observer);
}

void Entity::detach(Interfaces::IObserver* observer)
{
    m_observers.erase(std::remove(m_observers.begin(), m_observers.end(), observer), m_observers.end());
}

void Entity::markModified()
{
    if (m_state == Enumerations::Normal)
        m_state = Enumerations::Modified;
    notify();
}

void Entity::notify()
{
    if (m_observers.empty())
        return;
    // An observer may detach itself or another one while it is told: only who is still attached is called.
    const std::vector<Interfaces::IObserver*> told = m_observers;
    for (Interfaces::IObserver* observer : told) {
        if (std::find(m_observers.begin(), m_observers.end(), observer) != m_observers.end())
            observer->changed(*this);
    }
}

bool isListed(Enumerations::EntityState child, Enumerations::EntityState parent)
{
    using namespace Enumerations;
    return child != Deleted && (child != Snapshot || parent == Snapshot);
}

} // namespace QOR::Entities
