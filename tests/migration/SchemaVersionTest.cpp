#include "database/DbException.h"
#include "database/Failure.h"
#include "migration/MigrationFixture.h"
#include "migration/editor/EditorMigrationManager.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"

#include <functional>
#include <utility>

using namespace DataAccess;
using namespace TestSupport;
using Manager::EditorMigrationManager;
using MigrationFixture::addCase;
using Opened = MigrationFixture::Opened<EditorMigrationManager>;

/// What the stored version says, may say, and who else may change it.
class SchemaVersionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsStoredVersions_data();
    void readsStoredVersions();
    void goesOnWhereAnotherProgramIs_data() { addBackends(); }
    void goesOnWhereAnotherProgramIs();
    void tellsWhyACommitFails_data() { addBackends(); }
    void tellsWhyACommitFails();
};

void SchemaVersionTest::readsStoredVersions_data()
{
    QTest::addColumn<int>("backend");
    QTest::addColumn<QString>("change");
    QTest::addColumn<quint32>("version");
    QTest::addColumn<bool>("migrates");
    const auto addVersion = [](const char* change, quint32 version, bool migrates) {
        addCase(QString::fromLatin1(change), QString::fromLatin1(change), version, migrates);
    };
    const quint32 invalid = 4294967295U;
    const char* const sqliteOnly[] = {"UPDATE feature_defaults SET value = X'00ff'", "DELETE FROM features"};
    addVersion("UPDATE feature_defaults SET value = '10'", 10, false);
    addVersion("UPDATE feature_defaults SET value = '4294967304'", 8, true);
    addVersion("UPDATE feature_defaults SET value = '-1'", invalid, false);
    addVersion("ALTER TABLE feature_defaults RENAME COLUMN value TO other", invalid, false);
    // A current network whose version is lost is not one from before there were versions.
    for (const char* damage : {"UPDATE feature_defaults SET value = 'abc'", "UPDATE feature_defaults SET value = ''",
                               "UPDATE feature_defaults SET value = '0'", "UPDATE feature_defaults SET value = NULL",
                               "DELETE FROM feature_defaults", "DELETE FROM feature_defaults; DELETE FROM features",
                               "DROP TABLE feature_defaults", "DROP TABLE feature_defaults; DROP TABLE features",
                               "UPDATE features SET module = 'm'", "UPDATE features SET module = NULL",
                               "UPDATE features SET type = 'i'", "UPDATE features SET name = 'cablesversion '"})
        addVersion(damage, 0, false);
    addVersion("UPDATE feature_defaults SET value = '2'", 2, false);
    addVersion("UPDATE feature_defaults SET value = '5'", 5, false);
    for (const char* damage : sqliteOnly)
        QTest::newRow(damage) << static_cast<int>(Enumerations::SQLite3) << QString::fromLatin1(damage) << 0U << false;
}

/// The tables are those of version 8, and where these show nothing, of version 1.
void SchemaVersionTest::readsStoredVersions()
{
    QFETCH(QString, change);
    QFETCH(quint32, version);
    QFETCH(bool, migrates);
    const bool hasTraces = !change.contains(QLatin1String("; D"));
    for (const int tables : {8, 1}) {
        if (tables == 1 && (version != 0 || !hasTraces))
            continue;
        const LogCapture log;
        Opened opened;
        MigrationFixture::create(opened.worker, MigrationFixture::Editor, tables, MigrationFixture::With);
        MigrationFixture::execute(opened.worker, change.split(QLatin1Char(';')));
        const QStringList before = MigrationFixture::content(opened.worker);
        const auto isNewer = [&] { return opened.worker.run(&EditorMigrationManager::isNewerThanThisBuild); };
        if (change.contains(QLatin1String("RENAME")))
            QVERIFY_EXCEPTION_THROWN(isNewer(), Exceptions::ExecutionException);
        else
            QCOMPARE(isNewer(), version > 9);
        QCOMPARE(opened.manager.DbVersion(), version);
        QCOMPARE(opened.manager.MigrationSteps(), version > 9 ? 0 : 9 - version);
        const Database::FailureWatch watch;
        QCOMPARE(opened.manager.Migrate(), migrates);
        QCOMPARE(watch.failed(), !migrates);
        QCOMPARE(watch.reason().contains(QStringLiteral("nothing was changed")), version < 8);
        QVERIFY(log.contains(watch.reason()));
        if (migrates) {
            QCOMPARE(opened.manager.DbVersion(), opened.manager.ExpectedVersion());
            QCOMPARE(MigrationFixture::rows(
                         opened.worker, QStringLiteral("SELECT count(*) FROM features AS f JOIN feature_defaults AS d "
                                                       "ON d.featureid = f.id WHERE name = 'CablesVersion' AND "
                                                       "module = '' AND type = 'I' AND NOT admin = (1 = 1)")),
                     QStringLiteral("1"));
        } else {
            QCOMPARE(MigrationFixture::content(opened.worker), before);
            QCOMPARE(MigrationFixture::backupContent(opened.worker, opened.database), QStringList());
        }
    }
}

/// The other program does all its work after this one has read the version: what this one would do is outdated.
void SchemaVersionTest::goesOnWhereAnotherProgramIs()
{
    Opened opened;
    MigrationFixture::create(opened.worker, MigrationFixture::Editor, 1, MigrationFixture::With);
    RunningWorker otherWorker(opened.database.config());
    EditorMigrationManager other;
    other.setDbWorker(otherWorker.get());
    static std::function<void()> interlude;
    interlude = [&] {
        QVERIFY(other.Migrate());
        MigrationFixture::execute(otherWorker,
                                  {QStringLiteral("INSERT INTO ce_insulation (id, name) VALUES ('i', 'PE')")});
    };
    const QtMessageHandler handler = [](QtMsgType, const QMessageLogContext&, const QString& text) {
        if (text.contains(QLatin1String("Migrate FROM:")) && interlude)
            std::exchange(interlude, nullptr)();
    };
    const QtMessageHandler previous = qInstallMessageHandler(handler);
    const bool migrated = opened.manager.Migrate();
    qInstallMessageHandler(previous);
    QVERIFY(migrated);
    QVERIFY(!interlude);
    QCOMPARE(opened.manager.DbVersion(), 9U);
    QCOMPARE(MigrationFixture::rows(opened.worker, QStringLiteral("SELECT name FROM ce_insulation")),
             QStringLiteral("PE"));
}

void SchemaVersionTest::tellsWhyACommitFails()
{
    const LogCapture log;
    Opened opened;
    MigrationFixture::create(opened.worker, MigrationFixture::Editor, 8);
    MigrationFixture::execute(
        opened.worker,
        {QStringLiteral("CREATE TABLE parent (id INTEGER PRIMARY KEY)"),
         QStringLiteral("CREATE TABLE child (id INTEGER REFERENCES parent(id) DEFERRABLE INITIALLY DEFERRED)")});
    if (opened.database.type() == Enumerations::SQLite3)
        MigrationFixture::execute(opened.worker,
                                  {QStringLiteral("PRAGMA foreign_keys = ON"),
                                   QStringLiteral("CREATE TRIGGER late AFTER UPDATE ON feature_defaults BEGIN "
                                                  "INSERT INTO child VALUES (5); END")});
    else
        MigrationFixture::execute(
            opened.worker,
            {QStringLiteral("CREATE FUNCTION late() RETURNS trigger LANGUAGE plpgsql AS "
                            "$$ BEGIN INSERT INTO child VALUES (5); RETURN NULL; END $$"),
             QStringLiteral("CREATE TRIGGER late AFTER UPDATE ON feature_defaults EXECUTE FUNCTION late()")});
    const Database::FailureWatch watch;
    QVERIFY(!opened.manager.Migrate());
    QVERIFY2(watch.reason().contains(QStringLiteral("cannot be committed: ")) &&
                 watch.reason().contains(QStringLiteral("foreign key"), Qt::CaseInsensitive),
             qPrintable(watch.reason()));
    QVERIFY(log.messages(QtWarningMsg, QStringLiteral("qor.migration.editor")).last().contains(watch.reason()));
}

DATAACCESS_TEST(SchemaVersionTest)

#include "SchemaVersionTest.moc"
