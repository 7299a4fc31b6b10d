#pragma once

#include "database/IDatabase.h"
#include "database/ValueConverter.h"
#include "entities/qor/EntityState.h"

#include <QDateTime>
#include <QString>
#include <QUuid>

#include <memory>
#include <vector>

namespace DataAccess::Repositories {

/// Where a select list has the columns that every entity table carries. The id is always the first.
struct Bookkeeping
{
    int timestamp; ///< Time of the last write, UTC.
    int deleted;   ///< Whether the row is marked deleted.
    int snap;      ///< Whether it is a snapshot.
};

/// The four statements of a repository. %1 stands for the table, %2 (or, without a table, %1) for the id.
struct Statements
{
    QString getAll;          ///< Selects all rows.
    QString getById;         ///< Selects one row.
    QString insert;          ///< Writes a new row.
    QString update;          ///< Writes an existing row.
    Bookkeeping bookkeeping; ///< Of both selects.
};

/// The two ways to write a row.
enum class Write { Insert, Update };

/// Stores the entities of one table: gives the statements, and turns rows into objects and back.
template <typename T>
class EntityMapping
{
public:
    EntityMapping() = default;
    EntityMapping(const EntityMapping&) = delete;
    EntityMapping& operator=(const EntityMapping&) = delete;
    virtual ~EntityMapping() = default;

    /// The statements, which live as long as the mapping.
    virtual const Statements& statements() const = 0;

    /// Reads the properties from the current row, by position in the select list.
    virtual void read(const Interfaces::IValueConverter& row, const std::shared_ptr<T>& entity) const = 0;

    /// Binds the properties by placeholder, the same ones in the insert and the update.
    virtual void bind(Interfaces::IValueConverter& values, const T& entity) const = 0;

    /// The text of get all and of get by id, when it depends on what the database holds.
    virtual QString getAll(Interfaces::IDatabase& /*db*/) const { return statements().getAll; }
    virtual QString getById(Interfaces::IDatabase& /*db*/) const { return statements().getById; }

    /// The text of an id in a statement; null for an id that no row can have.
    virtual QString idText(const QUuid& id) const { return id.toString(); }

    /// The id of the current row.
    virtual QUuid readId(const Interfaces::IValueConverter& row) const { return row.toUuid(0); }

    /// Reads the time stamp and the state; after the properties, which change the state.
    virtual void readBookkeeping(const Interfaces::IValueConverter& row, const Bookkeeping& columns, T& entity) const
    {
        using namespace QOR::Entities::Enumerations;
        entity.SetTimestamp(row.toUtcDateTime(columns.timestamp));
        // A row with both flags is a snapshot.
        entity.SetEntityState(row.toBool(columns.snap) ? Snapshot : row.toBool(columns.deleted) ? Deleted : Normal);
    }

    /// Binds the id, the flags of the entity's state, and the time of the write.
    virtual void bindBookkeeping(Interfaces::IValueConverter& values, const T& entity, const QDateTime& now) const
    {
        using namespace QOR::Entities::Enumerations;
        values.bindValue(QStringLiteral(":id"), entity.Id());
        values.bindValue(QStringLiteral(":deleted"), entity.EntityState() == Deleted);
        values.bindValue(QStringLiteral(":snap"), entity.EntityState() == Snapshot);
        values.bindValue(QStringLiteral(":timestamp"), now);
    }

    /// Which of two rows of one id counts; by default the one read later.
    virtual bool supersedes(const T& /*later*/, const T& /*earlier*/) const { return true; }

    /// Binds again what an update must keep as it is stored, though the entity does not have it.
    virtual void bindStored(Interfaces::IDatabase& /*db*/, Interfaces::IValueConverter& /*values*/,
                            const std::shared_ptr<T>& /*entity*/) const
    {}
    /// Whether bindStored() or writeMore() runs statements: then no row may be under way meanwhile.
    virtual bool usesConnection() const { return false; }
    /// Called after @p entity was written and got its new time stamp, before it gets its new state.
    virtual void written(const std::shared_ptr<T>& /*entity*/) const {}

    /// Reads what other tables hold of @p entities, all that one read gave. If it throws, the read gives nothing.
    virtual void readMore(Interfaces::IDatabase& /*db*/, const std::vector<std::shared_ptr<T>>& /*entities*/) const {}
    /// Writes it, in the transaction of the row and after it. If it throws, nothing of the batch is kept.
    virtual void writeMore(Interfaces::IDatabase& /*db*/, Write /*kind*/, const T& /*entity*/) const {}
};

} // namespace DataAccess::Repositories
