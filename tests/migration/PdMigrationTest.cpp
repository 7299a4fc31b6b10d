#include "database/IDatabase.h"
#include "migration/MigrationFixture.h"
#include "migration/editor/EditorMigrationManager.h"
#include "migration/pd/PdMigrationManager.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"

#include <QRegularExpression>

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
    void bringsBackWhatACrashLeftBehind_data();
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

void PdMigrationTest::bringsBackWhatACrashLeftBehind_data()
{
    QTest::addColumn<int>("backend");
    QTest::addColumn<int>("version");
    QTest::addColumn<QStringList>("statements");
    QTest::addColumn<QString>("overviews");
    QTest::addColumn<QString>("summaries");
    const QString rename = QStringLiteral("ALTER TABLE %1 RENAME TO %1_old");
    const QString copy = QStringLiteral("CREATE TABLE %1_old AS SELECT * FROM %1");
    const QString other = QStringLiteral("INSERT INTO %1_old (id, report_id) VALUES ('2', 'left')");
    const auto forBoth = [](const QStringList& statements) {
        QStringList all;
        for (const char* table : {"pd_iec_overview", "pd_summary"}) {
            for (const QString& statement : statements)
                all.append(statement.arg(QLatin1String(table)));
        }
        return all;
    };
    const QString old = QStringLiteral("1|0; 2|0");
    const QString none = QStringLiteral("1|NULL; 2|NULL");
    using MigrationFixture::addCase;
    addCase(QStringLiteral("only there"), 4, forBoth({rename, other}), old, none);
    addCase(QStringLiteral("there too"), 4, forBoth({copy, other}), old, none);
    addCase(QStringLiteral("new layout"), 8, forBoth({copy, other}), QStringLiteral("1|4.25; 2|0"),
            QStringLiteral("1|11.25; 2|NULL"));
}

void PdMigrationTest::bringsBackWhatACrashLeftBehind()
{
    QFETCH(int, version);
    QFETCH(QStringList, statements);
    const LogCapture log;
    Opened opened;
    MigrationFixture::create(opened.worker, MigrationFixture::Pd, version);
    execute(opened.worker, statements + QStringList(QStringLiteral("UPDATE feature_defaults SET value = '4'")));
    QVERIFY(opened.manager.Migrate());
    QTEST(rows(opened.worker, QStringLiteral("SELECT id, sensitivity_level FROM pd_iec_overview ORDER BY id")),
          "overviews");
    QTEST(rows(opened.worker, QStringLiteral("SELECT id, max_applied_voltage FROM pd_summary ORDER BY id")),
          "summaries");
    // Of one id there can be one row only.
    QCOMPARE(log.contains(QStringLiteral("Discarded 1 rows of \"pd_summary_old\"")),
             statements.first().startsWith(QLatin1String("CREATE")));
    const QStringList left = opened.worker.run([](Interfaces::IDatabase& db) { return db.Tables(); });
    QCOMPARE(left.filter(QRegularExpression(QStringLiteral("_old$"))), QStringList());
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
