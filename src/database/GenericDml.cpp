#include "database/GenericDml.h"

#include "database/DbException.h"
#include "database/IDatabase.h"
#include "database/LoggingCategories.h"
#include "entities/qor/IEntity.h"

#include <QSqlError>

#include <functional>

namespace DataAccess::Database {

using Exceptions::DbException;
using Interfaces::IDatabase;
using Interfaces::IValueConverter;
using QOR::Entities::Interfaces::IEntity;

namespace {

/// Runs a statement on the row of @p entity; @p bindMore binds what it has besides the id.
bool runOnRow(IDatabase& db, IEntity* entity, const QString& statement, const char* function,
              const std::function<void(IValueConverter&)>& bindMore)
{
    if (entity == nullptr || entity->Id().isNull())
        return false;
    try {
        // The rows of a batch follow each other: the statement is prepared with the first of them.
        QSqlQuery& query = db.PreparedQuery(statement);
        if (query.lastError().isValid()) {
            qCCritical(lcDatabase) << function << query.lastError().text();
            return false;
        }
        const auto converter = db.Converter(query);
        converter->bindValue(QStringLiteral(":id"), entity->Id());
        bindMore(*converter);
        return db.Exec(query);
    } catch (const DbException& error) {
        qCCritical(lcDatabase) << function << error.what();
        return false;
    }
}

} // namespace

unsigned int GenericDml::count(IDatabase& db, const QString& table)
{
    try {
        QSqlQuery& query = db.Query();
        query.setForwardOnly(true);
        if (query.prepare(QStringLiteral("SELECT count(*) FROM %1").arg(table)) && db.Exec(query) && query.next()) {
            const unsigned int rows = db.Converter(query)->toUint(0);
            query.finish(); // A select that is under way keeps the table from being changed.
            return rows;
        }
        qCCritical(lcDatabase) << Q_FUNC_INFO << query.lastError().text();
    } catch (const DbException& error) {
        qCCritical(lcDatabase) << Q_FUNC_INFO << error.what();
    }
    return 0;
}

bool GenericDml::deleteFromTable(IDatabase& db, IEntity* entity, const QString& table)
{
    const QString statement =
        QStringLiteral("UPDATE %1 SET \"deleted\" = :deleted, \"timestamp\" = :timestamp WHERE id = :id").arg(table);
    return runOnRow(db, entity, statement, Q_FUNC_INFO, [](IValueConverter& values) {
        values.bindValue(QStringLiteral(":deleted"), true);
        values.bindValue(QStringLiteral(":timestamp"), QDateTime::currentDateTimeUtc());
    });
}

bool GenericDml::removeFromTable(IDatabase& db, IEntity* entity, const QString& table)
{
    const QString statement = QStringLiteral("DELETE FROM %1 WHERE id = :id").arg(table);
    return runOnRow(db, entity, statement, Q_FUNC_INFO, [](IValueConverter&) {});
}

} // namespace DataAccess::Database
