#include "bench/BenchDatabase.h"

#include "migration/editor/EditorMigrationManager.h"
#include "migration/pd/PdMigrationManager.h"

namespace Bench {

void migrate(const std::shared_ptr<DataAccess::Interfaces::IConfig>& config)
{
    const TestSupport::RunningWorker worker(config);
    DataAccess::Manager::EditorMigrationManager editor;
    DataAccess::Manager::PdMigrationManager pd;
    editor.setDbWorker(worker.get());
    pd.setDbWorker(worker.get());
    if (!editor.Migrate() || !pd.Migrate())
        qFatal("The schema cannot be made");
}

std::shared_ptr<DataAccess::Interfaces::IConfig> makeConfig(DataAccess::Enumerations::DatabaseType type,
                                                            const QString& name)
{
    if (type == DataAccess::Enumerations::Postgres)
        return TestSupport::serverConfig(name);
    auto config = std::make_shared<DataAccess::Database::DatabaseConfig>();
    config->SetConnectionName(QUuid::createUuid().toString());
    config->SetDatabaseName(name);
    config->SetType(type);
    return config;
}

QString backendName(DataAccess::Enumerations::DatabaseType type)
{
    return type == DataAccess::Enumerations::Postgres ? QStringLiteral("PostgreSQL") : QStringLiteral("SQLite");
}

} // namespace Bench
