#pragma once

#include "database/DbException.h"
#include "database/Operation.h"
#include "repositories/private/EntityMapping.h"

#include <QHash>

#include <memory>
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

/**
 * Runs the selects that @p statementsFor gives for the database, and makes an entity of each row. A select that fails
 * gives no rows at all; a value that cannot be converted ends the reading, with a warning, and gives the rows before
 * it. Both are reported as failures of @p operation.
 */
template <typename T, typename StatementsFor>
std::vector<std::shared_ptr<T>> read(Interfaces::IDatabase& db, const StatementsFor& statementsFor,
                                     const EntityMapping<T>& mapping, const Bookkeeping& columns,
                                     const Database::Operation& operation)
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
            if (!reader->error().isEmpty()) {
                operation.readFailed(*reader);
                return {};
            }
        }
    } catch (const Exceptions::DbException& error) {
        if (!executed) {
            operation.selectFailed(db, error);
            return {};
        }
        operation.failed(db, error);
    }
    try {
        mapping.readMore(db, rows);
    } catch (const Exceptions::DbException& error) {
        operation.failed(db, error);
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
    const QString idText = mapping.idText(id);
    if (idText.isNull())
        return nullptr;
    const auto statement = [&](Interfaces::IDatabase& database) {
        return QStringList(withId(mapping.getById(database), table, idText));
    };
    const Database::Operation operation(function, table);
    return single(read(db, statement, mapping, mapping.statements().bookkeeping, operation), mapping);
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

} // namespace DataAccess::Repositories::EntityRows
