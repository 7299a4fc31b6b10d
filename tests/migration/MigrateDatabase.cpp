#include "migration/editor/EditorMigrationManager.h"
#include "support/RunningWorker.h"
#include "support/TestDatabase.h"

#include <QCoreApplication>

#include <cstdio>

/// Migrates the database of a type and name, and says before when it is ready to; 0 when that succeeds.
int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3)
        return 2;
    const auto config = TestSupport::serverConfig(arguments.at(2));
    config->SetType(static_cast<DataAccess::Enumerations::DatabaseType>(arguments.at(1).toInt()));
    const TestSupport::RunningWorker worker(config);
    DataAccess::Manager::EditorMigrationManager manager;
    manager.setDbWorker(worker.get());
    if (!manager.WaitForConnected())
        return 3;
    std::puts("ready");
    std::fflush(stdout);
    return manager.Migrate() ? 0 : 1;
}
