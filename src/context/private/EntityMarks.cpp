#include "context/private/EntityLedger.h"

// The marks (deleted, snapshot) that rows have and entities show, and what has to be written because of them.
namespace DataAccess::Context {

using namespace QOR::Entities::Enumerations;

namespace {

bool isMark(EntityState state)
{
    return state == Deleted || state == Snapshot;
}

} // namespace

QHash<const EntityLedger::Entity*, EntityLedger::State> EntityLedger::showMarks()
{
    const Deafness deafness(*this, Deafness::ToStates);
    QHash<const Entity*, State> states;
    for (const Entity* entity : qAsConst(m_hidden)) {
        const State state = entity->EntityState();
        // New removes the mark, and another mark replaces it.
        if (state == Normal || state == Modified)
            states.insert(entity, state);
    }
    for (auto it = states.cbegin(); it != states.cend(); ++it) {
        m_hidden.remove(it.key());
        if (const Record* record = find(*it.key()))
            record->entity->SetEntityState(record->mark);
    }
    return states;
}

void EntityLedger::hideMarks(const QHash<const Entity*, State>& states)
{
    const Deafness deafness(*this, Deafness::ToStates);
    for (auto it = states.cbegin(); it != states.cend(); ++it) {
        const Record* record = find(*it.key());
        if (record == nullptr || record->entity->EntityState() != record->mark)
            continue;
        m_hidden.insert(it.key());
        record->entity->SetEntityState(it.value());
    }
}

void EntityLedger::settleLoaded()
{
    const auto states = showMarks();
    for (auto it = states.cbegin(); it != states.cend(); ++it)
        noteChange(*it.key(), false);
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (auto change = m_changes.cbegin(); change != m_changes.cend(); ++change) {
        Record& record = m_records[change.key()];
        setPlace(record, record.entity->EntityState() == Deleted ? Place::SetAside : Place::Attached);
    }
}

EntityLedger::State EntityLedger::markToWrite(const Entity& entity) const
{
    const State state = entity.EntityState();
    if (isMark(state))
        return state;
    // The state New removes a hidden mark; one that the entity showed is gone with any other state.
    return state != New && m_hidden.contains(&entity) ? find(entity)->mark : Normal;
}

bool EntityLedger::mustBeWritten(const Change& change) const
{
    const Entity& entity = *change.entity;
    const Record* record = find(entity);
    const State mark = markToWrite(entity);
    if (record->row == Row::NotAsked)
        return mark != Deleted;
    return change.isOfContent || entity.EntityState() == New || entity.EntityState() == Modified ||
           mark != record->mark;
}

bool EntityLedger::hasUnsavedChanges(const Entity& entity) const
{
    const Record* record = find(entity);
    if (record == nullptr)
        return false;
    Change change{record->entity, false};
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto told = m_changes.constFind(&entity);
        if (told == m_changes.constEnd())
            return false;
        change.isOfContent = *told;
    }
    return mustBeWritten(change);
}

void EntityLedger::noteNeverStored(const Entity& entity)
{
    Record& record = m_records[&entity];
    record.row = Row::NotAsked;
    record.mark = Deleted;
}

void EntityLedger::noteWritten(const Entity& entity)
{
    noteRow(entity, entity);
    m_records[&entity].mark = isMark(entity.EntityState()) ? entity.EntityState() : Normal;
}

void EntityLedger::settle(const Entity& entity)
{
    const auto record = m_records.find(&entity);
    if (record == m_records.end())
        return;
    if (record->place == Place::SetAside && record->mark == Deleted)
        return;
    setPlace(*record, Place::Attached);
    if (isMark(record->mark))
        m_hidden.insert(&entity);
    else
        m_hidden.remove(&entity);
    const EntityPointer settled = record->entity;
    settled->SetEntityState(Normal);
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto change = m_changes.find(&entity);
    if (change != m_changes.end() && !*change && settled->EntityState() == Normal)
        m_changes.erase(change);
}

} // namespace DataAccess::Context
