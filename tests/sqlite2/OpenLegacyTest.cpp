#include "database/DatabaseConfig.h"
#include "migration/editor/EditorMigrationManager.h"
#include "migration/pd/PdMigrationManager.h"
#include "support/RunningWorker.h"
#include "support/TestMain.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QUuid>

using namespace DataAccess;

namespace {

QByteArray bytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

/// A legacy file is opened like any other database: its working copy reaches the current schema with all its rows.
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
        const QTemporaryDir folder;
        const QString path = folder.filePath(file);
        QVERIFY(QFile::copy(QStringLiteral(SQLITE2_FIXTURES "/") + file, path));
        const QByteArray before = bytesOf(path);
        auto config = std::make_shared<Database::DatabaseConfig>();
        config->SetConnectionName(QUuid::createUuid().toString());
        config->SetDatabaseName(path);
        config->SetType(Enumerations::SQLite2);
        for (int opening = 0; opening < 2; ++opening) {
            TestSupport::RunningWorker worker(config);
            Manager::EditorMigrationManager editor;
            editor.setDbWorker(worker.get());
            QVERIFY(editor.WaitForConnected());
            QVERIFY(editor.Migrate());
            QCOMPARE(editor.DbVersion(), 9U);
            Manager::PdMigrationManager pd;
            pd.setDbWorker(worker.get());
            QVERIFY(pd.Migrate());
            QCOMPARE(pd.DbVersion(), 8U);
        }
        QCOMPARE(bytesOf(path), before);
    }
};

DATAACCESS_TEST(OpenLegacyTest)

#include "OpenLegacyTest.moc"
