#pragma once

#include "database/BatchCache.h"
#include "database/ExecutionException.h"
#include "database/LoggingCategories.h"
#include "repositories/EntityMapping.h"

#include <QHash>
#include <QSqlError>
#include <QSqlQuery>

#include <memory>
#include <optional>
#include <vector>

/// What the jobs of an entity repository do with the rows of its table.
namespace DataAccess::Repositories::EntityRows {

/// Puts @p text into @p statement wherever it has the placeholder "%" with @p digit; whether there is one. To have
/// QString::arg() do it would take as long as to read a row.
inline bool fill(QString& statement, char digit, const QString& text)
{
    bool filled = false;
    for (int at = statement.indexOf(QLatin1Char('%')); at >= 0; at = statement.indexOf(QLatin1Char('%'), at + 1)) {
        if (at + 1 < statement.size() && statement[at + 1] == QLatin1Char(digit)) {
            statement.replace(at, 2, text);
            filled = true;
        }
    }
    return filled;
}

/// @p statement with the table's name filled in, if it does not name its table itself.
inline QString withTable(QString statement, const QString& table)
{
    fill(statement, '1', table);
    return statement;
}

/// @p statement with the id filled in, and the table's name if it does not name its table itself.
inline QString withId(QString statement, const QString& table, const QString& idText)
{
    const bool namesTable = !fill(statement, '2', idText);
    fill(statement, '1', namesTable ? idText : table);
    return statement;
}

/// The connection's query with @p statement prepared. Throws ExecutionException with the driver's text.
inline QSqlQuery& prepare(Interfaces::IDatabase& db, const QString& statement)
{
    QSqlQuery& query = db.Query();
    if (!query.prepare(statement))
        throw Exceptions::ExecutionException(query.lastError().text().toLocal8Bit().constData());
    return query;
}

/**
 * Runs the selects that @p statementsFor gives for the database, and makes an entity of each row. A select that fails
 * gives no rows at all; a value that cannot be converted ends the reading, with a warning, and gives the rows before
 * it.
 */
template <typename T, typename StatementsFor>
std::vector<std::shared_ptr<T>> read(Interfaces::IDatabase& db, const StatementsFor& statementsFor,
                                     const EntityMapping<T>& mapping, const Bookkeeping& columns, const char* function)
{
    std::vector<std::shared_ptr<T>> rows;
    bool executed = false;
    try {
        for (const QString& statement : statementsFor(db)) {
            executed = false;
            const auto reader = db.Read(statement);
            executed = true;
            const Interfaces::IValueConverter& row = reader->row();
            while (reader->next()) {
                auto entity = std::make_shared<T>();
                entity->SetId(mapping.readId(row));
                mapping.read(row, entity);
                mapping.readBookkeeping(row, columns, *entity);
                rows.push_back(std::move(entity));
            }
            const QString error = reader->error();
            if (!error.isEmpty()) {
                qCWarning(lcDatabase) << function << error;
                return {};
            }
        }
    } catch (const Exceptions::DbException& error) {
        if (!executed)
            return {};
        qCWarning(lcDatabase) << function << error.what();
    }
    try {
        mapping.readMore(db, rows);
    } catch (const Exceptions::DbException& error) {
        qCWarning(lcDatabase) << function << error.what();
        return {};
    }
    return rows;
}

/// The row that counts among @p rows of one id; null when there is none.
template <typename T>
std::shared_ptr<T> single(const std::vector<std::shared_ptr<T>>& rows, const EntityMapping<T>& mapping)
{
    std::shared_ptr<T> found;
    for (const std::shared_ptr<T>& entity : rows) {
        if (!found || mapping.supersedes(*entity, *found))
            found = entity;
    }
    return found;
}

/// The row of @p id; null when there is none.
template <typename T>
std::shared_ptr<T> readById(Interfaces::IDatabase& db, const QString& table, const QUuid& id,
                            const EntityMapping<T>& mapping, const char* function)
{
    const auto statement = [&](Interfaces::IDatabase& database) {
        return QStringList(withId(mapping.getById(database), table, mapping.idText(id)));
    };
    return single(read(db, statement, mapping, mapping.statements().bookkeeping, function), mapping);
}

/// @p rows by id, of each id the row that counts.
template <typename T>
QHash<QUuid, std::shared_ptr<T>> byId(std::vector<std::shared_ptr<T>> rows, const EntityMapping<T>& mapping)
{
    QHash<QUuid, std::shared_ptr<T>> entities;
    entities.reserve(static_cast<int>(rows.size()));
    for (std::shared_ptr<T>& entity : rows) {
        std::shared_ptr<T>& present = entities[entity->Id()];
        if (!present || mapping.supersedes(*entity, *present))
            present = std::move(entity);
    }
    return entities;
}

/// What a write leaves in @p entity, once it is in the table: the time @p now, and the state of a stored one.
template <typename T>
void markWritten(const std::shared_ptr<T>& entity, const QDateTime& now, const EntityMapping<T>& mapping)
{
    using namespace QOR::Entities::Enumerations;
    entity->SetTimestamp(now);
    mapping.written(entity);
    if (entity->EntityState() != Deleted && entity->EntityState() != Snapshot)
        entity->SetEntityState(Normal);
}

/// Writes @p entities in one transaction. Stops at the first failure, logs it, and then nothing is kept.
template <typename T>
bool write(Interfaces::IDatabase& db, Write kind, const QString& table, const std::vector<std::shared_ptr<T>>& entities,
           const EntityMapping<T>& mapping, const char* function)
{
    const Statements& statements = mapping.statements();
    const QDateTime now = QDateTime::currentDateTimeUtc();
    try {
        Database::Transaction transaction = db.Transaction();
        if (!transaction.isOpen())
            return false;
        std::optional<Database::BatchCache> cache;
        auto next = entities.begin(); // the first that is not known to be written
        const auto written = [&] {
            if (!cache)
                cache.emplace(db, entities.size());
            while (!*next)
                ++next;
            mapping.writeMore(db, kind, **next);
            markWritten(*next++, now, mapping);
        };
        const QString& statement = kind == Write::Insert ? statements.insert : statements.update;
        const auto writer = db.Write(withTable(statement, table), written);
        Interfaces::IValueConverter& values = writer->values();
        for (const std::shared_ptr<T>& entity : entities) {
            if (!entity)
                continue;
            if (entity->Id().isNull()) {
                writer->finish();
                qCWarning(lcDatabase) << function << "An entity without an id cannot be stored";
                return false;
            }
            mapping.bindBookkeeping(values, *entity, now);
            mapping.bind(values, *entity);
            if (kind == Write::Update)
                mapping.bindStored(db, values, entity);
            writer->run();
            if (mapping.usesConnection())
                writer->finish();
        }
        writer->finish();
        return transaction.commit();
    } catch (const Exceptions::DbException& error) {
        qCWarning(lcDatabase) << function << error.what();
        return false;
    }
}

} // namespace DataAccess::Repositories::EntityRows
