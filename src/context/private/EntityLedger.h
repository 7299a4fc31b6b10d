#pragma once

#include "entities/qor/Entity.h"
#include "entities/qor/IObserver.h"

#include <QHash>
#include <QSet>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace DataAccess::Context {

/// How an entity holds another one.
enum class Bond {
    Owned,   ///< As a part of itself.
    Referred ///< As something that stands for itself, and may be shared.
};

using BondVisitor = std::function<void(const std::shared_ptr<QOR::Entities::Entity>&, Bond)>;

/**
 * The entities of a context: what is known of the row of each, and which have changed since, as they say themselves.
 * What a save has to write follows from that alone.
 *
 * An entity that was saved as deleted or as a snapshot shows the state Normal, as all others, while its row keeps the
 * mark: the mark is hidden then.
 *
 * Used under the turn of its context; only what the entities tell may come from any thread.
 */
class EntityLedger : private QOR::Entities::Interfaces::IObserver
{
public:
    using Entity = QOR::Entities::Entity;
    using EntityPointer = std::shared_ptr<Entity>;
    using State = QOR::Entities::Enumerations::EntityState;

    /// What is known of a row.
    enum class Row : quint8 {
        NotAsked, ///< Nothing: the database has to be asked.
        Present,
        Gone ///< Another program has removed it.
    };
    enum class Place : quint8 {
        Attached, ///< Counted, and saved.
        SetAside, ///< Loaded as deleted: not counted, and saved when it changes.
        Detached  ///< Not saved.
    };
    struct Record
    {
        EntityPointer entity;
        QDateTime timestamp;                              ///< That of the row.
        State mark = QOR::Entities::Enumerations::Normal; ///< Deleted or Snapshot when the row is marked so.
        Row row = Row::NotAsked;
        Place place = Place::Attached;
        bool isReferredOnly = false; ///< Here because others refer to it: stored if it has no row, and left alone else.
    };
    /// An entity that a save has to look at.
    struct Change
    {
        EntityPointer entity;
        bool isOfContent = false; ///< Or else of the state only, or of what is known of the row.
    };

    /// While it lives, what entities tell of their states, or of everything, is not heard.
    class Deafness
    {
    public:
        enum Extent : int { None, ToStates, ToAll };
        Deafness(EntityLedger& ledger, Extent extent)
            : m_ledger(ledger)
            , m_before(ledger.m_deafness.exchange(extent))
        {}
        ~Deafness() { m_ledger.m_deafness = m_before; }
        Deafness(const Deafness&) = delete;
        Deafness& operator=(const Deafness&) = delete;

    private:
        EntityLedger& m_ledger;
        const Extent m_before;
    };

    EntityLedger() = default;
    EntityLedger(const EntityLedger&) = delete;
    EntityLedger& operator=(const EntityLedger&) = delete;
    ~EntityLedger() override;

    /// Adds what the application attaches; false when another attached entity has its id.
    bool attach(const EntityPointer& entity);
    /// Adds an entity to be saved, or saved again; of those with its id only one of its kind is in its way.
    void adopt(const EntityPointer& entity);
    /// Adopts what the changed entities own, and what they refer to and the database may not have.
    void adoptLinked();
    /// Keeps @p entity, or else what is known under its id, from being saved.
    void detach(const EntityPointer& entity);
    void forget(const Entity& entity);
    void clear();

    unsigned int count() const { return m_attached; }
    /// Null when @p entity is not known.
    const Record* find(const Entity& entity) const;
    bool hasUnsavedChanges(const Entity& entity) const;
    /// Moves entities that were given another id; before they are looked for by id.
    void followIds();

    /// Gives entities with hidden marks the states of their rows, and says which states they had.
    QHash<const Entity*, State> showMarks();
    /// Gives entities @p states back and hides their marks again, except where the state is another one by now.
    void hideMarks(const QHash<const Entity*, State>& states);
    /// Ends a load: everything has the state of its row, and is attached unless that is Deleted.
    void settleLoaded();

    // The steps of a save.
    /// What a save has to look at, and the ledger forgets; putBack() gives it back what could not be stored.
    std::vector<Change> takeChanges();
    void putBack(const Change& change);
    /// Files @p entity under its id; false when that is null, or another attached one is there.
    bool tryToFile(const EntityPointer& entity);
    /// The mark that @p entity is to have in the database: Normal, Deleted or Snapshot.
    State markToWrite(const Entity& entity) const;
    bool mustBeWritten(const Change& change) const;
    /// Notes that @p row was just read; whether @p entity was written at another time than it.
    bool noteRow(const Entity& entity, const Entity& row);
    /// Notes that another program has removed the row.
    void noteGone(const Entity& entity);
    /// Notes that @p entity was marked deleted before it had a row.
    void noteNeverStored(const Entity& entity);
    /// Notes that the row is now as @p entity.
    void noteWritten(const Entity& entity);
    /// Makes @p entity Normal when all of it is stored.
    void settle(const Entity& entity);

protected:
    /// The entities that show another state than their row has.
    const QSet<const Entity*>& hidden() const { return m_hidden; }
    /// Notes an entity that was loaded and is filed.
    void noteLoaded(const EntityPointer& entity);
    /// Files a row that was just read. What is known under its id stays, unless @p replaces is set and it is attached
    /// and has no changes.
    void receive(const EntityPointer& row, bool replaces);

private:
    // Entities with an id are filed by it, each kind for itself.
    virtual std::vector<EntityPointer> filedUnder(const QUuid& id) const = 0;
    /// What of the kind of @p entity is filed under its id.
    virtual EntityPointer filedInPlaceOf(const EntityPointer& entity) const = 0;
    virtual void file(const EntityPointer& entity) = 0;
    virtual void unfile(const EntityPointer& entity, const QUuid& id) = 0;
    virtual void unfileAll() = 0;
    /// Calls @p visit with what @p entity is linked to, if its kind is one of this ledger.
    virtual void visitBonds(const EntityPointer& entity, const BondVisitor& visit) const = 0;

    void changed(QOR::Entities::Interfaces::IEntity& entity) override;
    void contentChanged(QOR::Entities::Interfaces::IEntity& entity) override;
    void stateChanged(QOR::Entities::Interfaces::IEntity& entity) override;
    void idChanged(QOR::Entities::Interfaces::IEntity& entity, const QUuid& former) override;

    void add(const Record& record);
    /// Adopts what another entity is linked to, unless it is known or another object stands for its row; tells whether
    /// its own links have to be looked at now.
    bool adoptLinked(const EntityPointer& entity, bool isReferredOnly);
    void setPlace(Record& record, Place place);
    void noteChange(const Entity& entity, bool isOfContent);
    /// Removes an entity with the id of that of @p record, which learns what is known of the row; false when the other
    /// one is attached, and stays.
    bool makeRoom(Record& record);

    QHash<const Entity*, Record> m_records;
    QHash<const Entity*, std::weak_ptr<Entity>> m_refused; ///< Detached before they had a row.
    QSet<const Entity*> m_hidden;
    unsigned int m_attached = 0;

    // What entities tell.
    mutable std::mutex m_mutex;
    QHash<const Entity*, bool> m_changes; ///< Whether their content has changed.
    QHash<const Entity*, QUuid> m_formerIds;
    std::atomic<Deafness::Extent> m_deafness{Deafness::None};
};

} // namespace DataAccess::Context
