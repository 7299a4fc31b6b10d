#include "database/IDatabase.h"
#include "migration/MigrationFixture.h"
#include "migration/editor/EditorMigrationManager.h"
#include "migration/pd/PdMigrationManager.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"

using namespace DataAccess;
using namespace TestSupport;
using MigrationFixture::execute;
using MigrationFixture::rows;

namespace {

const QString category = QStringLiteral("qor.migration.pd");

using Opened = MigrationFixture::Opened<Manager::PdMigrationManager>;

} // namespace

class PdMigrationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void migratesFromEveryVersion_data();
    void migratesFromEveryVersion();
    void documentsItsTables();
    void bringsBackWhatACrashLeftBehind_data() { addBackends(); }
    void bringsBackWhatACrashLeftBehind();
    void logsTablesThatExist_data() { addBackends(); }
    void logsTablesThatExist();
    void goesWithTheCableNetworkInAnyOrder_data() { addBackends(); }
    void goesWithTheCableNetworkInAnyOrder();
};

void PdMigrationTest::migratesFromEveryVersion_data()
{
    QTest::addColumn<int>("backend");
    QTest::addColumn<int>("version");
    for (int version = 1; version < 8; ++version)
        MigrationFixture::addCase(QString::number(version), version);
}

void PdMigrationTest::migratesFromEveryVersion()
{
    QFETCH(int, version);
    const LogCapture log;
    Opened fresh;
    QVERIFY(fresh.manager.Migrate());
    QCOMPARE(fresh.manager.DbVersion(), 8U);

    Opened opened;
    MigrationFixture::create(opened.worker, MigrationFixture::Pd, version);
    QCOMPARE(opened.manager.MigrationSteps(), 8U - static_cast<unsigned int>(version));
    QVERIFY(opened.manager.Migrate());
    QCOMPARE(MigrationFixture::faults(opened.worker, MigrationFixture::Pd, version), QStringList());
    QCOMPARE(MigrationFixture::schema(opened.worker), MigrationFixture::schema(fresh.worker));
    QVERIFY(log.contains(
        QStringLiteral("bool __cdecl DataAccess::Manager::PdMigrationManager::Migrate(void) Migrate FROM: %1 TO 8")
            .arg(version)));
    const LogCapture second;
    QVERIFY(opened.manager.Migrate());
    QCOMPARE(second.messages(QtDebugMsg, category), QStringList());
}

void PdMigrationTest::documentsItsTables()
{
    TestDatabase database(Enumerations::SQLite3);
    RunningWorker worker(database.config());
    Manager::PdMigrationManager manager;
    manager.setDbWorker(worker.get());
    QVERIFY(manager.Migrate());
    const QString summary = rows(worker, QStringLiteral("SELECT sql FROM sqlite_master WHERE name = 'pd_summary'"));
    QVERIFY(summary.contains(QStringLiteral("\"vwd\" INTEGER , -- associated task has ???\n")));
    QVERIFY(summary.contains(QStringLiteral("\"deleted\" INTEGER , -- \n")));
}

void PdMigrationTest::bringsBackWhatACrashLeftBehind()
{
    const LogCapture log;
    Opened opened;
    MigrationFixture::create(opened.worker, MigrationFixture::Pd, 4);
    execute(opened.worker, {QStringLiteral("ALTER TABLE pd_iec_overview RENAME TO pd_iec_overview_old"),
                            QStringLiteral("CREATE TABLE pd_summary_old AS SELECT * FROM pd_summary")});
    QVERIFY(opened.manager.Migrate());
    QCOMPARE(MigrationFixture::faults(opened.worker, MigrationFixture::Pd, 4), QStringList());
    const QStringList left = opened.worker.run([](Interfaces::IDatabase& db) { return db.Tables(); });
    QCOMPARE(left.filter(QStringLiteral("_old")), QStringList());
}

void PdMigrationTest::logsTablesThatExist()
{
    Opened opened;
    MigrationFixture::create(opened.worker, MigrationFixture::Pd, 8);
    execute(opened.worker, {QStringLiteral("UPDATE feature_defaults SET value = '2'")});
    const LogCapture log;
    QVERIFY(opened.manager.Migrate());
    const QStringList warnings = log.messages(QtWarningMsg, category);
    QCOMPARE(warnings.size(), 8);
    QCOMPARE(warnings.first(), QStringLiteral("Table: \"pd_evaluation\" allready exists!"));
    QCOMPARE(warnings.last(), QStringLiteral("Table: \"pd_lbdiagram\" already exists!"));
    QCOMPARE(MigrationFixture::faults(opened.worker, MigrationFixture::Pd, 8), QStringList());
}

void PdMigrationTest::goesWithTheCableNetworkInAnyOrder()
{
    const LogCapture log;
    QStringList schemas;
    for (const bool editorFirst : {true, false}) {
        Opened opened;
        Manager::EditorMigrationManager editor;
        editor.setDbWorker(opened.worker.get());
        QVERIFY(editorFirst ? editor.Migrate() && opened.manager.Migrate()
                            : opened.manager.Migrate() && editor.Migrate());
        QCOMPARE(editor.DbVersion(), 9U);
        QCOMPARE(opened.manager.DbVersion(), 8U);
        schemas.append(MigrationFixture::schema(opened.worker).join(QLatin1Char('\n')));
    }
    QCOMPARE(schemas.first(), schemas.last());
}

DATAACCESS_TEST(PdMigrationTest)

#include "PdMigrationTest.moc"
