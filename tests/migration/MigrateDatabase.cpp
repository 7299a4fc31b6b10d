#include "migration/editor/EditorMigrationManager.h"
#include "migration/pd/PdMigrationManager.h"
#include "support/RunningWorker.h"
#include "support/TestDatabase.h"

#include <QCoreApplication>

#include <cstdio>

/// Migrates the database of a type and name, after it has said that it is ready to and its input has ended; 0 when that
/// succeeds.
int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3)
        return 2;
    const auto config = TestSupport::serverConfig(arguments.at(2));
    config->SetType(static_cast<DataAccess::Enumerations::DatabaseType>(arguments.at(1).toInt()));
    const TestSupport::RunningWorker worker(config);
    DataAccess::Manager::EditorMigrationManager editor;
    DataAccess::Manager::PdMigrationManager pd;
    editor.setDbWorker(worker.get());
    pd.setDbWorker(worker.get());
    if (!editor.WaitForConnected())
        return 3;
    std::puts("ready");
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    return editor.Migrate() && pd.Migrate() ? 0 : 1;
}
