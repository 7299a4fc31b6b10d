#include "context/private/EntityLedger.h"

#include <utility>

namespace DataAccess::Context {

using namespace QOR::Entities::Enumerations;
using QOR::Entities::Interfaces::IEntity;

namespace {

const EntityLedger::Entity* entityOf(IEntity& entity)
{
    return static_cast<const EntityLedger::Entity*>(&entity);
}

} // namespace

EntityLedger::~EntityLedger()
{
    for (const Record& record : qAsConst(m_records))
        record.entity->detach(this);
}

void EntityLedger::changed(IEntity& entity)
{
    // A new link may lead to an entity that is not known here yet.
    if (m_deafness == Deafness::None)
        noteChange(*entityOf(entity), false);
}

void EntityLedger::contentChanged(IEntity& entity)
{
    if (m_deafness < Deafness::ToAll)
        noteChange(*entityOf(entity), true);
}

void EntityLedger::stateChanged(IEntity& entity)
{
    if (m_deafness < Deafness::ToStates)
        noteChange(*entityOf(entity), false);
}

void EntityLedger::idChanged(IEntity& entity, const QUuid& former)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_formerIds.contains(entityOf(entity)))
        m_formerIds.insert(entityOf(entity), former);
}

void EntityLedger::noteChange(const Entity& entity, bool isOfContent)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    bool& change = m_changes[&entity];
    change = change || isOfContent;
}

const EntityLedger::Record* EntityLedger::find(const Entity& entity) const
{
    const auto record = m_records.constFind(&entity);
    return record == m_records.constEnd() ? nullptr : &*record;
}

void EntityLedger::add(const Record& record)
{
    record.entity->attach(this);
    m_records.insert(record.entity.get(), record);
    if (record.place == Place::Attached)
        ++m_attached;
}

void EntityLedger::setPlace(Record& record, Place place)
{
    m_attached += unsigned(place == Place::Attached) - unsigned(record.place == Place::Attached);
    record.place = place;
}

void EntityLedger::noteLoaded(const EntityPointer& entity)
{
    const State mark = entity->EntityState();
    add({entity, entity->Timestamp(), mark, Row::Present, mark == Deleted ? Place::SetAside : Place::Attached});
    // The next save has to make it Normal, like all that is attached.
    if (mark == Snapshot)
        noteChange(*entity, false);
}

void EntityLedger::receive(const EntityPointer& row, bool replaces)
{
    const EntityPointer here = filedInPlaceOf(row);
    const Record* known = here ? find(*here) : nullptr;
    if (known != nullptr && (!replaces || known->place == Place::Detached || hasUnsavedChanges(*here))) {
        if (known->row != Row::Present && noteRow(*here, *row))
            noteChange(*here, true);
        return;
    }
    if (known != nullptr)
        forget(*here);
    file(row);
    noteLoaded(row);
}

bool EntityLedger::makeRoom(Record& record)
{
    const EntityPointer here = filedInPlaceOf(record.entity);
    if (!here || here == record.entity)
        return true;
    const Record other = m_records.value(here.get());
    if (other.place == Place::Attached)
        return false;
    forget(*here);
    if (other.row == Row::Present) {
        record.row = Row::Present;
        record.mark = other.mark;
        record.timestamp = other.timestamp;
        noteChange(*record.entity, record.entity->Timestamp() != other.timestamp);
    }
    return true;
}

bool EntityLedger::attach(const EntityPointer& entity)
{
    followIds();
    if (find(*entity) == nullptr && !entity->Id().isNull()) {
        for (const EntityPointer& other : filedUnder(entity->Id())) {
            if (find(*other)->place == Place::Attached)
                return false;
        }
    }
    adopt(entity);
    return true;
}

void EntityLedger::adopt(const EntityPointer& entity)
{
    const auto known = m_records.find(entity.get());
    m_refused.remove(entity.get());
    if (known != m_records.end()) {
        setPlace(*known, Place::Attached);
        known->isReferredOnly = false;
    } else {
        Record record;
        record.entity = entity;
        add(record);
        tryToFile(entity);
    }
    noteChange(*entity, false);
}

void EntityLedger::detach(const EntityPointer& entity)
{
    followIds();
    std::vector<EntityPointer> detached;
    if (find(*entity) != nullptr)
        detached.push_back(entity);
    else if (!entity->Id().isNull())
        detached = filedUnder(entity->Id());
    for (const EntityPointer& each : detached) {
        Record& record = m_records[each.get()];
        if (record.row == Row::Present) {
            setPlace(record, Place::Detached);
        } else {
            forget(*each);
            m_refused.insert(each.get(), each);
        }
    }
}

void EntityLedger::adoptLinked()
{
    followIds();
    std::vector<EntityPointer> changed;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        for (auto change = m_changes.cbegin(); change != m_changes.cend(); ++change) {
            const Record* record = find(*change.key());
            if (record != nullptr && record->place != Place::Detached)
                changed.push_back(record->entity);
        }
    }
    while (!changed.empty()) {
        const EntityPointer entity = std::move(changed.back());
        changed.pop_back();
        const bool isReferredOnly = find(*entity)->isReferredOnly;
        visitBonds(entity, [&](const EntityPointer& linked, Bond bond) {
            if (adoptLinked(linked, isReferredOnly || bond == Bond::Referred))
                changed.push_back(linked);
        });
    }
}

bool EntityLedger::adoptLinked(const EntityPointer& entity, bool isReferredOnly)
{
    const auto known = m_records.find(entity.get());
    if (known != m_records.end())
        return !isReferredOnly && std::exchange(known->isReferredOnly, false);
    if (m_refused.value(entity.get()).lock() == entity || filedInPlaceOf(entity))
        return false;
    adopt(entity);
    m_records[entity.get()].isReferredOnly = isReferredOnly;
    return true;
}

void EntityLedger::forget(const Entity& entity)
{
    const Record record = m_records.take(&entity);
    if (!record.entity)
        return;
    if (record.place == Place::Attached)
        --m_attached;
    record.entity->detach(this);
    unfile(record.entity, entity.Id());
    m_hidden.remove(&entity);
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_changes.remove(&entity);
    m_formerIds.remove(&entity);
}

void EntityLedger::clear()
{
    const auto records = std::exchange(m_records, {});
    for (const Record& record : records)
        record.entity->detach(this);
    m_refused.clear();
    m_hidden.clear();
    m_attached = 0;
    unfileAll();
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_changes.clear();
    m_formerIds.clear();
}

void EntityLedger::followIds()
{
    QHash<const Entity*, QUuid> formerIds;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        formerIds.swap(m_formerIds);
    }
    std::vector<const Entity*> moved;
    for (auto it = formerIds.cbegin(); it != formerIds.cend(); ++it) {
        const Record* record = find(*it.key());
        if (record == nullptr || record->entity->Id() == it.value())
            continue;
        unfile(record->entity, it.value());
        moved.push_back(it.key());
    }
    // Another id is another row. Entities that have exchanged ids must all leave their places first.
    for (const Entity* entity : moved) {
        if (find(*entity)->place == Place::Detached) {
            forget(*entity);
            continue;
        }
        Record& record = m_records[entity];
        record.row = Row::NotAsked;
        record.mark = Normal;
        m_hidden.remove(entity);
        setPlace(record, Place::Attached);
        noteChange(*entity, false);
        tryToFile(record.entity);
    }
}

bool EntityLedger::tryToFile(const EntityPointer& entity)
{
    if (entity->Id().isNull())
        return false;
    Record record = m_records.value(entity.get());
    if (!makeRoom(record))
        return false;
    file(entity);
    m_records[entity.get()] = record;
    return true;
}

std::vector<EntityLedger::Change> EntityLedger::takeChanges()
{
    followIds();
    QHash<const Entity*, bool> changes;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        changes.swap(m_changes);
    }
    std::vector<Change> taken;
    taken.reserve(changes.size());
    for (auto change = changes.cbegin(); change != changes.cend(); ++change) {
        const Record* record = find(*change.key());
        if (record == nullptr)
            continue;
        if (record->place == Place::Detached)
            noteChange(*change.key(), change.value());
        else
            taken.push_back({record->entity, change.value()});
    }
    return taken;
}

void EntityLedger::putBack(const Change& change)
{
    if (find(*change.entity) != nullptr)
        noteChange(*change.entity, change.isOfContent);
}

bool EntityLedger::noteRow(const Entity& entity, const Entity& row)
{
    Record& record = m_records[&entity];
    record.row = Row::Present;
    record.mark = row.EntityState();
    record.timestamp = row.Timestamp();
    record.isReferredOnly = false;
    return entity.Timestamp() != row.Timestamp();
}

void EntityLedger::noteGone(const Entity& entity)
{
    m_records[&entity].row = Row::Gone;
}

} // namespace DataAccess::Context
