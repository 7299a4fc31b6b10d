#include "Fixtures.h"
#include "database/Database.h"
#include "database/DatabaseConfig.h"
#include "migration/editor/EditorMigrationManager.h"
#include "migration/pd/PdMigrationManager.h"
#include "support/FileLocker.h"
#include "support/RunningWorker.h"
#include "support/TestMain.h"

#include <QTest>
#include <QUuid>

using namespace DataAccess;
using namespace TestSupport;

namespace {

std::shared_ptr<Interfaces::IConfig> configOf(const QString& path, Enumerations::DatabaseType type)
{
    auto config = std::make_shared<Database::DatabaseConfig>();
    config->SetConnectionName(QUuid::createUuid().toString());
    config->SetDatabaseName(path);
    config->SetType(type);
    return config;
}

} // namespace

/// A legacy file is opened like any other database.
class OpenLegacyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void migrates_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("current") << QStringLiteral("cables.db");
        QTest::newRow("old") << QStringLiteral("old.db");
    }

    void migrates()
    {
        QFETCH(QString, file);
        const LegacyCopy legacy(file);
        for (int opening = 0; opening < 2; ++opening) {
            const RunningWorker worker(configOf(legacy.path(), Enumerations::SQLite2));
            Manager::EditorMigrationManager editor;
            Manager::PdMigrationManager pd;
            editor.setDbWorker(worker.get());
            pd.setDbWorker(worker.get());
            QVERIFY(editor.WaitForConnected());
            QVERIFY(editor.Migrate() && pd.Migrate());
            QCOMPARE(editor.DbVersion(), editor.ExpectedVersion());
            QCOMPARE(pd.DbVersion(), pd.ExpectedVersion());
        }
        QVERIFY(legacy.isUnchanged());
    }

    /// Whoever looks into a file, and closes it, takes away the locks that its process has on it.
    void openingTheCopyKeepsItsLocks()
    {
        const LegacyCopy legacy(QStringLiteral("old.db"));
        Database::Database writer(configOf(legacy.path(), Enumerations::SQLite2));
        const Database::Transaction transaction = writer.Transaction();
        writer.Exec(QStringLiteral("INSERT INTO ce_owner (id) VALUES ('new')"));
        QVERIFY(Database::Database(configOf(legacy.path(), Enumerations::SQLite2)).Connect());
        QVERIFY(Database::Database(configOf(legacy.workingCopy(), Enumerations::SQLite3)).Connect());
        QVERIFY(!FileLocker(legacy.workingCopy()).isHeld());
    }
};

DATAACCESS_TEST(OpenLegacyTest)

#include "OpenLegacyTest.moc"
