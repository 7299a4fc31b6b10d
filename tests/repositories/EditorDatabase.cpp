#include "repositories/EditorDatabase.h"

#include "migration/editor/EditorMigrationManager.h"

namespace TestSupport {

EditorDatabase::EditorDatabase(DataAccess::Enumerations::DatabaseType type)
    : m_database(type)
    , m_worker(m_database.config())
{
    DataAccess::Manager::EditorMigrationManager migration;
    migration.setDbWorker(m_worker.get());
    if (!migration.Migrate())
        qFatal("The schema of the test's database cannot be made");
}

QVariant EditorDatabase::value(const QString& statement)
{
    return m_worker.run([&](DataAccess::Interfaces::IDatabase& db) {
        QSqlQuery query = db.Exec(statement);
        return query.next() ? query.value(0) : QVariant();
    });
}

} // namespace TestSupport
