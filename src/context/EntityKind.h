#pragma once

#include "context/SavePass.h"
#include "database/LoggingCategories.h"
#include "repositories/IRepository.h"

#include <exception>

namespace DataAccess::Context {

/// The entities of one kind in a context, what is known of their rows, and how changes of them are written.
template <typename T>
class EntityKind
{
public:
    using Entity = T;
    using Entities = QHash<QUuid, std::shared_ptr<T>>;
    using EntityList = std::vector<std::shared_ptr<T>>;
    using Repository = Interfaces::IRepository<T>;

    /// All that have a row, as far as that is known.
    const Entities& entities() const { return m_entities; }

    /// The same without those that were marked deleted since they were loaded.
    Entities shown() const
    {
        Entities entities = m_entities;
        for (auto mark = m_marks.begin(); mark != m_marks.end(); ++mark) {
            if (mark->isHidden && mark->state == Deleted)
                entities.remove(mark.key());
        }
        return entities;
    }

    /// Takes what a load gave in place of all that was here.
    void replace(Entities loaded)
    {
        m_entities = std::move(loaded);
        m_marks.clear();
        for (const std::shared_ptr<T>& entity : qAsConst(m_entities))
            noteRow(entity->Id(), entity->EntityState());
    }

    /// Takes entities that were loaded beside what is here, except where that has changes which were not saved.
    void merge(const Entities& loaded)
    {
        for (const std::shared_ptr<T>& entity : loaded) {
            if (!hasUnsavedChanges(entity->Id()))
                noteRow(entity);
        }
    }

    /// Forgets what @p isGone says has no row any more, except where there are changes which were not saved.
    template <typename Predicate>
    void forgetIf(const Predicate& isGone)
    {
        for (auto it = m_entities.begin(); it != m_entities.end();) {
            if (isGone(**it) && !hasUnsavedChanges(it.key())) {
                m_marks.remove(it.key());
                it = m_entities.erase(it);
            } else {
                ++it;
            }
        }
    }

    /// Writes what of this kind is new, changed or newly marked. What fails is noted in @p pass, and keeps its state.
    void save(Repository& repository, SavePass& pass)
    {
        EntityList inserts;
        EntityList updates;
        sort(repository, pass, inserts, updates);
        write(&Repository::Insert, repository, inserts, pass);
        write(&Repository::Update, repository, updates, pass);
    }

    /// To be called when @p pass has made saved entities Normal: their rows keep the marks that the objects have lost.
    void noteHiddenMarks(const SavePass& pass)
    {
        for (auto mark = m_marks.begin(); mark != m_marks.end(); ++mark) {
            const std::shared_ptr<T> entity = m_entities.value(mark.key());
            if (entity->EntityState() == Normal && !pass.hasFailed(*entity))
                mark->isHidden = true;
        }
    }

    /// Gives the objects back the marks of their rows.
    void showMarks()
    {
        for (auto mark = m_marks.begin(); mark != m_marks.end(); ++mark) {
            if (mark->isHidden)
                m_entities.value(mark.key())->SetEntityState(mark->state);
            mark->isHidden = false;
        }
    }

private:
    using State = QOR::Entities::Enumerations::EntityState;
    static constexpr State Normal = QOR::Entities::Enumerations::Normal;
    static constexpr State New = QOR::Entities::Enumerations::New;
    static constexpr State Modified = QOR::Entities::Enumerations::Modified;
    static constexpr State Deleted = QOR::Entities::Enumerations::Deleted;
    static constexpr State Snapshot = QOR::Entities::Enumerations::Snapshot;

    /// Of a row that is marked deleted or a snapshot.
    struct Mark
    {
        State state = Normal;
        /// The object has lost the mark though the row keeps it.
        bool isHidden = false;
    };

    static bool isMark(State state) { return state == Deleted || state == Snapshot; }

    void noteRow(const QUuid& id, State state)
    {
        if (isMark(state))
            m_marks.insert(id, {state, false});
        else
            m_marks.remove(id);
    }

    void noteRow(const std::shared_ptr<T>& entity)
    {
        m_entities.insert(entity->Id(), entity);
        noteRow(entity->Id(), entity->EntityState());
    }

    /// Whether the mark of the object is another one than that of its row.
    bool isMarkedAnew(const T& entity) const
    {
        const Mark mark = m_marks.value(entity.Id());
        const State shown = isMark(entity.EntityState()) ? entity.EntityState() : Normal;
        return shown != mark.state && !mark.isHidden;
    }

    bool hasUnsavedChanges(const QUuid& id) const
    {
        const std::shared_ptr<T> entity = m_entities.value(id);
        return entity && (entity->EntityState() == New || entity->EntityState() == Modified || isMarkedAnew(*entity));
    }

    void sort(Repository& repository, SavePass& pass, EntityList& inserts, EntityList& updates)
    {
        EntityList unknown;
        for (const SavePass::EntityPointer& candidate : pass.candidates()) {
            const auto entity = std::dynamic_pointer_cast<T>(candidate);
            if (!entity)
                continue;
            if (entity->Id().isNull()) {
                qCWarning(lcContext) << Q_FUNC_INFO << "An entity without an id cannot be stored";
                pass.fail(*entity);
            } else if (const std::shared_ptr<T> row = m_entities.value(entity->Id())) {
                if (needsUpdate(*entity, *row))
                    updates.push_back(entity);
            } else {
                unknown.push_back(entity);
            }
        }
        // Entities marked deleted are not attached any more once they were loaded, and yet may have been changed.
        for (const std::shared_ptr<T>& entity : qAsConst(m_entities)) {
            if ((isMark(entity->EntityState()) || m_marks.contains(entity->Id())) && isMarkedAnew(*entity) &&
                !pass.attached(entity->Id()))
                updates.push_back(entity);
        }
        sortUnknown(repository, unknown, pass, inserts, updates);
    }

    /// @p row is what is known of the row; the same object, as a rule.
    bool needsUpdate(const T& entity, const T& row) const
    {
        if (entity.EntityState() == New || entity.EntityState() == Modified || isMarkedAnew(entity))
            return true;
        return &entity != &row && entity.Timestamp() != row.Timestamp();
    }

    /// Asks the database which of the entities it has: nothing is to be inserted twice.
    void sortUnknown(Repository& repository, const EntityList& unknown, SavePass& pass, EntityList& inserts,
                     EntityList& updates)
    {
        if (unknown.empty())
            return;
        try {
            const Entities rows = findRows(repository, unknown);
            for (const std::shared_ptr<T>& entity : unknown) {
                if (const std::shared_ptr<T> row = rows.value(entity->Id())) {
                    noteRow(row);
                    if (needsUpdate(*entity, *row))
                        updates.push_back(entity);
                    else
                        m_entities.insert(entity->Id(), entity);
                } else if (entity->EntityState() != Deleted) {
                    inserts.push_back(entity);
                }
            }
        } catch (const std::exception& error) {
            qCCritical(lcContext) << Q_FUNC_INFO << error.what();
            for (const std::shared_ptr<T>& entity : unknown)
                pass.fail(*entity);
        }
    }

    static Entities findRows(Repository& repository, const EntityList& wanted)
    {
        // One by one costs a round trip to the worker each.
        constexpr std::size_t reading = 8;
        const std::size_t count = repository.Count();
        if (count == 0)
            return {};
        if (wanted.size() * reading > count)
            return repository.GetAll();
        Entities rows;
        for (const std::shared_ptr<T>& entity : wanted) {
            if (const std::shared_ptr<T> row = repository.GetById(entity->Id()))
                rows.insert(entity->Id(), row);
        }
        return rows;
    }

    void write(bool (Repository::*operation)(EntityList), Repository& repository, const EntityList& entities,
               SavePass& pass)
    {
        if (entities.empty())
            return;
        const std::vector<Before> before(entities.begin(), entities.end());
        // A row keeps the mark that its object has lost, unless the object is to be a new one.
        for (const std::shared_ptr<T>& entity : entities) {
            const Mark mark = m_marks.value(entity->Id());
            if (mark.isHidden && entity->EntityState() == Modified)
                entity->SetEntityState(mark.state);
        }
        bool written = false;
        try {
            written = (repository.*operation)(entities);
        } catch (const std::exception& error) {
            qCCritical(lcContext) << Q_FUNC_INFO << error.what();
        }
        if (written) {
            for (const std::shared_ptr<T>& entity : entities)
                noteRow(entity);
            return;
        }
        qCWarning(lcContext) << Q_FUNC_INFO << entities.size() << "entities could not be stored";
        for (const Before& state : before) {
            state.restore();
            pass.fail(*state.entity);
        }
    }

    /// An entity as it was before a write, which may change it and then fail.
    struct Before
    {
        explicit Before(const std::shared_ptr<T>& written)
            : entity(written)
            , timestamp(written->Timestamp())
            , state(written->EntityState())
        {}

        void restore() const
        {
            entity->SetTimestamp(timestamp);
            entity->SetEntityState(state);
        }

        std::shared_ptr<T> entity;
        QDateTime timestamp;
        State state;
    };

    Entities m_entities;
    QHash<QUuid, Mark> m_marks;
};

} // namespace DataAccess::Context
