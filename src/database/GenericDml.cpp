#include "database/GenericDml.h"

#include "database/DbException.h"
#include "database/IDatabase.h"
#include "database/Operation.h"
#include "database/private/StatementError.h"
#include "entities/qor/IEntity.h"

namespace DataAccess::Database {

using Exceptions::DbException;
using Exceptions::ExecutionException;
using Interfaces::IDatabase;
using Interfaces::IValueConverter;
using QOR::Entities::Interfaces::IEntity;

unsigned int GenericDml::count(IDatabase& db, const QString& table)
{
    try {
        const auto reader = db.Read(QStringLiteral("SELECT count(*) FROM %1").arg(table));
        if (!reader->next())
            throw ExecutionException(reader->error().toLocal8Bit().constData());
        return reader->row().toUint(0);
    } catch (const DbException& error) {
        Operation(Q_FUNC_INFO, table, QtCriticalMsg).failed(db, error);
    }
    return 0;
}

bool GenericDml::changeRow(IDatabase& db, const IEntity* entity, const QString& table, const QString& statement,
                           const std::function<void(IValueConverter&)>& bind, const char* function)
{
    if (entity == nullptr || entity->Id().isNull()) {
        Operation(function, table)
            .failed(Failure::Kind::Statement, QStringLiteral("An entity without an id has no row"));
        return false;
    }
    const Operation operation(function, table, QtCriticalMsg);
    try {
        // The rows of a batch follow each other: the statement is prepared with the first of them.
        QSqlQuery& query = db.PreparedQuery(statement);
        if (query.lastError().isValid())
            throw failureOf(query);
        bind(*db.Converter(query));
        db.Exec(query);
        if (query.numRowsAffected() != 0)
            return true;
        operation.foundNoRow(entity->Id());
    } catch (const DbException& error) {
        operation.failed(db, error, entity->Id());
    }
    return false;
}

bool GenericDml::deleteFromTable(IDatabase& db, IEntity* entity, const QString& table)
{
    const QString statement =
        QStringLiteral("UPDATE %1 SET \"deleted\" = :deleted, \"timestamp\" = :timestamp WHERE id = :id").arg(table);
    const auto bind = [&](IValueConverter& values) {
        values.bindValue(QStringLiteral(":id"), entity->Id());
        values.bindValue(QStringLiteral(":deleted"), true);
        values.bindValue(QStringLiteral(":timestamp"), QDateTime::currentDateTimeUtc());
    };
    return changeRow(db, entity, table, statement, bind, Q_FUNC_INFO);
}

bool GenericDml::removeFromTable(IDatabase& db, IEntity* entity, const QString& table)
{
    const QString statement = QStringLiteral("DELETE FROM %1 WHERE id = :id").arg(table);
    const auto bind = [&](IValueConverter& values) { values.bindValue(QStringLiteral(":id"), entity->Id()); };
    return changeRow(db, entity, table, statement, bind, Q_FUNC_INFO);
}

} // namespace DataAccess::Database
