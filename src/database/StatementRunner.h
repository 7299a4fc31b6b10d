#pragma once

#include "database/DataAccessExport.h"

#include <QPair>
#include <QString>
#include <QVariant>
#include <QVector>

namespace DataAccess::Interfaces {
class IDatabase;
}

namespace DataAccess::Database {

class SchemaDialect;

/**
 * Runs statements inside a job. The first one that fails throws ExecutionException with the driver's text, so that
 * nothing is issued after it.
 */
class DATAACCESS_EXPORT StatementRunner
{
public:
    /// Values by placeholder.
    using Values = QVector<QPair<QString, QVariant>>;
    /// Rows of a select, each with its values in the order of the columns.
    using Rows = QVector<QVariantList>;

    /// @p db must outlive the runner.
    explicit StatementRunner(Interfaces::IDatabase& db);

    /// The database that the statements run on.
    Interfaces::IDatabase& database() const { return m_db; }
    /// What sets the backend apart; for this library only.
    const SchemaDialect& dialect() const;

    /// Runs @p statement, which has no placeholders.
    void execute(const QString& statement);
    /// Runs @p statement with the values of its placeholders. Returns the number of rows that the statement changed.
    int execute(const QString& statement, const Values& values);
    /// Runs @p statement once for each row of @p columns, which hold the values in the order of the placeholders.
    void executeBatch(const QString& statement, const QVector<QVariantList>& columns);
    /// All rows of a select, read to the end. The values can be bound to a statement and are stored as they were.
    Rows rows(const QString& select);
    /// The same of a select with placeholders.
    Rows rows(const QString& select, const Values& values);
    /// The number of rows of @p table.
    qint64 count(const QString& table);

private:
    Interfaces::IDatabase& m_db;
};

} // namespace DataAccess::Database
