#pragma once

#include "database/BatchCache.h"
#include "database/DbException.h"
#include "database/Operation.h"
#include "repositories/private/EntityMapping.h"
#include "repositories/private/EntityRows.h"

#include <memory>
#include <optional>
#include <vector>

namespace DataAccess::Repositories {

/// Entities that are inserted or updated in one transaction: all of them, or none. Used by one job, once.
template <typename T>
class EntityBatch
{
public:
    using Rows = std::vector<std::shared_ptr<T>>;

    /// Everything passed must outlive the batch. Null entities are skipped.
    EntityBatch(Interfaces::IDatabase& db, const EntityMapping<T>& mapping, const Rows& rows,
                const Database::Operation& operation)
        : m_db(db)
        , m_mapping(mapping)
        , m_rows(rows)
        , m_operation(operation)
        , m_next(rows.begin())
    {}
    EntityBatch(const EntityBatch&) = delete;
    EntityBatch& operator=(const EntityBatch&) = delete;
    ~EntityBatch() = default;

    /// Stops at the first row that fails. Rows that are missing are passed over, so that each of them is reported. In
    /// both cases nothing of the batch is kept.
    bool write(Write kind, const QString& table)
    {
        m_kind = kind;
        try {
            Database::Transaction transaction = m_db.WriteTransaction();
            if (!transaction.isOpen())
                return false; // The connection has told why.
            const Statements& statements = m_mapping.statements();
            send(EntityRows::withTable(kind == Write::Insert ? statements.insert : statements.update, table));
            if (m_isIncomplete)
                return false;
            if (transaction.commit())
                return true;
            m_operation.commitFailed(transaction);
        } catch (const Exceptions::DbException& error) {
            m_operation.failed(m_db, error, error.isUnavailable() ? QUuid() : failedRow());
        }
        return false;
    }

private:
    void send(const QString& statement)
    {
        const auto writer = m_db.Write(statement, [this] { written(); });
        m_writer = writer.get();
        Interfaces::IValueConverter& values = writer->values();
        for (const std::shared_ptr<T>& entity : m_rows) {
            if (!entity)
                continue;
            if (entity->Id().isNull()) {
                writer->finish();
                throw Exceptions::ExecutionException("An entity without an id cannot be stored");
            }
            m_bound = entity.get();
            m_mapping.bindBookkeeping(values, *entity, m_now);
            m_mapping.bind(values, *entity);
            if (m_kind == Write::Update)
                m_mapping.bindStored(m_db, values, entity);
            m_bound = nullptr;
            writer->run();
            if (m_mapping.usesConnection())
                writer->finish();
        }
        writer->finish();
    }

    /// The next row has been sent to its end.
    void written()
    {
        skipNulls();
        const std::shared_ptr<T>& entity = *m_next;
        if (m_writer->touchedRow()) {
            if (!m_cache)
                m_cache.emplace(m_db, m_rows.size());
            m_mapping.writeMore(m_db, m_kind, *entity);
            markWritten(entity);
        } else {
            m_operation.foundNoRow(entity->Id());
            m_isIncomplete = true;
        }
        ++m_next;
    }

    /// Gives @p entity, which is in the table now, the time of the write and the state of a stored one.
    void markWritten(const std::shared_ptr<T>& entity) const
    {
        using namespace QOR::Entities::Enumerations;
        entity->SetTimestamp(m_now);
        m_mapping.written(entity);
        if (entity->EntityState() != Deleted && entity->EntityState() != Snapshot)
            entity->SetEntityState(Normal);
    }

    /// The row that caused an exception: the one being bound, or else the first without an answer.
    QUuid failedRow()
    {
        if (m_bound != nullptr)
            return m_bound->Id();
        skipNulls();
        return m_next != m_rows.end() ? (*m_next)->Id() : QUuid();
    }

    void skipNulls()
    {
        while (m_next != m_rows.end() && !*m_next)
            ++m_next;
    }

    Interfaces::IDatabase& m_db;
    const EntityMapping<T>& m_mapping;
    const Rows& m_rows;
    const Database::Operation& m_operation;
    const QDateTime m_now = QDateTime::currentDateTimeUtc();
    Write m_kind = Write::Insert;
    std::optional<Database::BatchCache> m_cache;
    Interfaces::IRowWriter* m_writer = nullptr;
    const T* m_bound = nullptr;
    typename Rows::const_iterator m_next; // the first one without an answer
    bool m_isIncomplete = false;
};

} // namespace DataAccess::Repositories
