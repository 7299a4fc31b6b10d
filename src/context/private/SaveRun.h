#pragma once

#include "context/private/EntityLedger.h"
#include "context/private/Loading.h"

#include <QSet>
#include <QStringList>

namespace DataAccess::Context {

/// One save of a context: writes what the ledger says has changed, kind by kind.
class SaveRun
{
public:
    explicit SaveRun(EntityLedger& ledger);

    /// Writes what of the kind called @p kind is new or has changed. What fails keeps its state, and is written by the
    /// next save. Once the database is out of reach nothing more is tried.
    template <typename T>
    void save(const char* kind, Interfaces::IRepository<T>& repository);
    /// Makes what is stored Normal. Gives the reason why something is not; empty when everything is.
    QString finish();

private:
    enum class Outcome { NotTried, Stored, Failed };
    struct Candidate
    {
        EntityLedger::Change change;
        Outcome outcome = Outcome::NotTried;
    };
    template <typename T>
    struct Item
    {
        std::shared_ptr<T> entity;
        Candidate* candidate;
    };
    template <typename T>
    using Items = std::vector<Item<T>>;
    template <typename T>
    using Operation = bool (Interfaces::IRepository<T>::*)(std::vector<std::shared_ptr<T>>);
    using Failure = Database::Failure;
    using FailureWatch = Database::FailureWatch;

    /// Finds among the candidates of one kind those whose rows are not known, and those that need an update.
    template <typename T>
    void sort(Items<T>& unknown, Items<T>& updates);
    template <typename T>
    void lookUp(Interfaces::IRepository<T>& repository, const Items<T>& unknown, Items<T>& inserts, Items<T>& updates);
    template <typename T>
    static auto findRows(Interfaces::IRepository<T>& repository, const Items<T>& wanted);
    template <typename T>
    void write(Operation<T> operation, Interfaces::IRepository<T>& repository, const Items<T>& items);
    template <typename T>
    bool run(Operation<T> operation, Interfaces::IRepository<T>& repository, const Items<T>& items);
    template <typename T>
    void fail(const Items<T>& items, const QString& reason);
    void fail(Candidate& candidate, const QString& reason);

    EntityLedger& m_ledger;
    QLatin1String m_kind{""}; ///< The name of the kind that is being saved.
    std::vector<Candidate> m_candidates;
    QStringList m_reasons;
    int m_failures = 0;
    bool m_isUnavailable = false;
};

template <typename T>
void SaveRun::save(const char* kind, Interfaces::IRepository<T>& repository)
{
    m_kind = QLatin1String(kind);
    Items<T> unknown;
    Items<T> inserts;
    Items<T> updates;
    sort(unknown, updates);
    lookUp(repository, unknown, inserts, updates);
    write(&Interfaces::IRepository<T>::Insert, repository, inserts);
    write(&Interfaces::IRepository<T>::Update, repository, updates);
}

template <typename T>
void SaveRun::sort(Items<T>& unknown, Items<T>& updates)
{
    for (Candidate& candidate : m_candidates) {
        const auto entity = std::dynamic_pointer_cast<T>(candidate.change.entity);
        const EntityLedger::Record* record = entity ? m_ledger.find(*entity) : nullptr;
        if (candidate.outcome != Outcome::NotTried || record == nullptr)
            continue;
        candidate.outcome = Outcome::Stored;
        if (record->row != EntityLedger::Row::Present && !m_ledger.tryToFile(entity))
            fail(candidate,
                 entity->Id().isNull()
                     ? QStringLiteral("%1: an entity without an id cannot be stored").arg(m_kind)
                     : QStringLiteral("%1: two attached entities have the id %2").arg(m_kind, entity->Id().toString()));
        else if (m_ledger.find(*entity)->row != EntityLedger::Row::Present)
            unknown.push_back({entity, &candidate});
        else if (m_ledger.mustBeWritten(candidate.change))
            updates.push_back({entity, &candidate});
    }
}

/// Asks the database which of the entities it has: nothing is to be inserted twice.
template <typename T>
void SaveRun::lookUp(Interfaces::IRepository<T>& repository, const Items<T>& unknown, Items<T>& inserts,
                     Items<T>& updates)
{
    using namespace QOR::Entities::Enumerations;
    if (unknown.empty() || m_isUnavailable) {
        fail(unknown, {});
        return;
    }
    const FailureWatch watch;
    const auto rows = guarded(Q_FUNC_INFO, [&] { return findRows(repository, unknown); });
    m_isUnavailable = watch.isUnavailable();
    if (watch.failed()) {
        fail(unknown, failureText(m_kind.data(), watch));
        return;
    }
    for (const Item<T>& item : unknown) {
        EntityLedger::Change& change = item.candidate->change;
        const std::shared_ptr<T> row = rows.value(item.entity->Id());
        if (row && m_ledger.find(*item.entity)->isReferredOnly) {
            m_ledger.forget(*item.entity);
        } else if (row) {
            change.isOfContent = m_ledger.noteRow(*item.entity, *row) || change.isOfContent;
            if (m_ledger.mustBeWritten(change))
                updates.push_back(item);
        } else if (m_ledger.markToWrite(*item.entity) == Deleted) {
            m_ledger.noteNeverStored(*item.entity);
        } else if (m_ledger.find(*item.entity)->row == EntityLedger::Row::Gone && item.entity->EntityState() != New) {
            fail(*item.candidate, QStringLiteral("%1: the row %2 was removed by another program")
                                      .arg(m_kind, item.entity->Id().toString()));
        } else {
            inserts.push_back(item);
        }
    }
}

template <typename T>
auto SaveRun::findRows(Interfaces::IRepository<T>& repository, const Items<T>& wanted)
{
    // Each row that is read by itself costs a round trip to the worker: as much as reading this many at once.
    constexpr std::size_t reading = 8;
    const std::size_t count = repository.Count();
    typename Interfaces::IRepository<T>::Entities rows;
    if (count > 0 && wanted.size() * reading > count)
        return repository.GetAll();
    if (count == 0)
        return rows;
    for (const Item<T>& item : wanted) {
        const FailureWatch watch;
        if (const std::shared_ptr<T> row = repository.GetById(item.entity->Id()))
            rows.insert(item.entity->Id(), row);
        if (watch.failed())
            break;
    }
    return rows;
}

template <typename T>
void SaveRun::write(Operation<T> operation, Interfaces::IRepository<T>& repository, const Items<T>& items)
{
    if (items.empty() || m_isUnavailable) {
        fail(items, {});
        return;
    }
    const FailureWatch watch;
    if (run(operation, repository, items))
        return;
    m_isUnavailable = watch.isUnavailable();
    QSet<QUuid> gone;
    for (const Failure& failure : watch.failures()) {
        if (failure.kind == Failure::Kind::NoRow)
            gone.insert(failure.row);
    }
    Items<T> missing;
    Items<T> others;
    for (const Item<T>& item : items) {
        if (gone.contains(item.entity->Id())) {
            m_ledger.noteGone(*item.entity);
            missing.push_back(item);
        } else {
            others.push_back(item);
        }
    }
    fail(missing, failureText(m_kind.data(), watch));
    // The batch was undone only because rows are missing: the others are tried again without these.
    if (!missing.empty())
        write(operation, repository, others);
    else
        fail(others, watch.failed() ? failureText(m_kind.data(), watch) : m_kind + QStringLiteral(": refused"));
}

template <typename T>
bool SaveRun::run(Operation<T> operation, Interfaces::IRepository<T>& repository, const Items<T>& items)
{
    struct Before
    {
        QDateTime timestamp;
        EntityLedger::State state;
    };
    const EntityLedger::Deafness deafness(m_ledger, EntityLedger::Deafness::ToStates);
    std::vector<std::shared_ptr<T>> entities;
    std::vector<Before> before;
    for (const Item<T>& item : items) {
        entities.push_back(item.entity);
        before.push_back({item.entity->Timestamp(), item.entity->EntityState()});
        const EntityLedger::State mark = m_ledger.markToWrite(*item.entity);
        if (mark != QOR::Entities::Enumerations::Normal)
            item.entity->SetEntityState(mark);
    }
    const bool written = guarded(Q_FUNC_INFO, [&] { return (repository.*operation)(entities); });
    for (std::size_t i = 0; i < entities.size(); ++i) {
        if (written) {
            m_ledger.noteWritten(*entities[i]);
        } else {
            entities[i]->SetTimestamp(before[i].timestamp);
            entities[i]->SetEntityState(before[i].state);
        }
    }
    return written;
}

template <typename T>
void SaveRun::fail(const Items<T>& items, const QString& reason)
{
    for (const Item<T>& item : items)
        fail(*item.candidate, reason);
}

} // namespace DataAccess::Context
