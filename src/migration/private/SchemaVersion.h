#pragma once

#include "migration/TableDefinition.h"

#include <QString>
#include <QVector>

namespace DataAccess::Database {
class StatementRunner;
}

namespace DataAccess::Manager {

using Database::StatementRunner;

struct MigrationModule;

/// The schema version of one part of a database: a row of the settings tables. For use inside jobs.
class SchemaVersion
{
public:
    explicit SchemaVersion(QString feature);

    /// The settings tables, in the order in which they can be created.
    static QVector<TableDefinition> tables();

    /// The stored version; 0 when there is none. Throws ExecutionException when the database cannot be read.
    quint32 read(StatementRunner& statements) const;
    /// Stores @p version; to be called in a transaction. Throws ExecutionException.
    void write(StatementRunner& statements, quint32 version) const;

    /**
     * Throws ExecutionException, with what is wrong and what to do, when the steps of @p module after @p version would
     * discard rows and the database cannot be at it: it is 0 although there was a version once, or there are rows in
     * what only later steps create.
     */
    static void requireCredible(const MigrationModule& module, quint32 version, StatementRunner& statements);

private:
    /// Whether the settings tables show that there was a version once: a row of that name, whatever else it says and
    /// however it is spelled, or a value that belongs to no row.
    bool hasTraces(StatementRunner& statements) const;

    QString m_feature;
};

} // namespace DataAccess::Manager
