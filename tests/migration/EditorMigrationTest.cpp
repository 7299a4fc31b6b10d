#include "database/ExecutionException.h"
#include "database/Failure.h"
#include "database/IDatabase.h"
#include "migration/MigrationFixture.h"
#include "migration/editor/EditorMigrationManager.h"
#include "support/FileLocker.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTest>

#include <functional>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

using namespace DataAccess;
using namespace TestSupport;
using Manager::EditorMigrationManager;

namespace {

const QString category = QStringLiteral("qor.migration.editor");
const QString defaults = QStringLiteral("feature_defaults");

using Opened = MigrationFixture::Opened<EditorMigrationManager>;
using MigrationFixture::addCase;

/// Lets the step that reaches @p version run, and nothing after it: the version cannot be stored.
void migrateWithoutVersion(Opened& opened, int version)
{
    const QString condition = QStringLiteral("NEW.value = '%1'").arg(version);
    MigrationFixture::forbid(opened.worker, QStringLiteral("INSERT"), defaults, condition);
    MigrationFixture::forbid(opened.worker, QStringLiteral("UPDATE"), defaults, condition);
    QVERIFY(!opened.manager.Migrate());
    QCOMPARE(opened.manager.DbVersion(), static_cast<quint32>(version - 1));
    MigrationFixture::allow(opened.worker, QStringLiteral("INSERT"), defaults);
    MigrationFixture::allow(opened.worker, QStringLiteral("UPDATE"), defaults);
}

} // namespace

class EditorMigrationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void migratesFromEveryVersion_data();
    void migratesFromEveryVersion();
    void givesEachSegmentItsDetail_data() { addBackends(); }
    void givesEachSegmentItsDetail();
    void leavesNothingOfAFailedStep_data();
    void leavesNothingOfAFailedStep();
    void readsStoredVersions_data();
    void readsStoredVersions();
    void goesOnWhereAnotherProgramIs_data() { addBackends(); }
    void goesOnWhereAnotherProgramIs();
    void tellsWhyACommitFails_data() { addBackends(); }
    void tellsWhyACommitFails();
    void callsNothingMigratedThatStays_data() { addBackends(); }
    void callsNothingMigratedThatStays();
    void keepsWhatOthersPutOnATable_data() { addBackends(); }
    void keepsWhatOthersPutOnATable();
    void survivesWithoutDatabase();
    void asksASilentServerOnce();
    void takesNoLockedFileForAFreshOne();
};

void EditorMigrationTest::migratesFromEveryVersion_data()
{
    QTest::addColumn<int>("backend");
    QTest::addColumn<int>("version");
    QTest::addColumn<bool>("withCableBook");
    for (int version = MigrationFixture::emptyVersion; version < 9; ++version) {
        addCase(QStringLiteral("version %1, each step twice").arg(version), version, false);
        addCase(QStringLiteral("version %1, cable book").arg(version), version, true);
    }
}

void EditorMigrationTest::migratesFromEveryVersion()
{
    QFETCH(int, version);
    QFETCH(bool, withCableBook);
    const auto cableBook = withCableBook ? MigrationFixture::With : MigrationFixture::Without;
    const LogCapture log;
    Opened opened;
    MigrationFixture::create(opened.worker, MigrationFixture::Editor, version, cableBook);
    const auto from = static_cast<quint32>(qMax(version, 0));
    QCOMPARE(opened.manager.MigrationSteps(), 9 - from);
    // In an empty database there is no table yet that could refuse a version.
    for (int step = version + 1; !withCableBook && version >= 0 && step <= 9; ++step)
        migrateWithoutVersion(opened, step);
    QVERIFY(opened.manager.Migrate());
    QCOMPARE(opened.manager.DbVersion(), 9U);
    QCOMPARE(MigrationFixture::faults(opened.worker, MigrationFixture::Editor, version, cableBook), QStringList());
    QVERIFY(log.contains(QStringLiteral("Migrate FROM: %1 TO 9").arg(from)));
    QCOMPARE(log.contains(QStringLiteral("FOREIGN KEY(mid) REFERENCES measures(id)")),
             opened.database.type() == Enumerations::Postgres && !withCableBook && version != 0 && version < 5);
    if (withCableBook) {
        QCOMPARE(opened.manager.migrationMessages().size(), version == 5 ? 1 : 0);
        const QString deleted = QStringLiteral("Deleted %1 unused items in %2");
        QVERIFY(log.contains(deleted.arg(version > 0 ? 1 : 0).arg(QStringLiteral("ce_switchgear"))));
        QCOMPARE(log.contains(deleted.arg(1).arg(QStringLiteral("ce_segment_details"))), version >= 4 && version < 8);
    }

    QCOMPARE(log.contains(QStringLiteral("Evaluations that could not be migrated stay in \"evaluation\" : 2")),
             version == 5 && !withCableBook);

    // Each row's schema is compared with that of the first, which began with an empty database.
    static QMap<QPair<int, bool>, QStringList> fresh;
    const QStringList schema = MigrationFixture::schema(opened.worker);
    QStringList& expected = fresh[{opened.database.type(), withCableBook}];
    if (version == MigrationFixture::emptyVersion)
        expected = schema;
    QCOMPARE(schema, expected);

    const LogCapture second;
    QVERIFY(opened.manager.Migrate());
    QCOMPARE(second.messages(QtDebugMsg, category), QStringList());
}

void EditorMigrationTest::givesEachSegmentItsDetail()
{
    Opened opened;
    MigrationFixture::create(opened.worker, MigrationFixture::Editor, 1, MigrationFixture::Without);
    migrateWithoutVersion(opened, 2);
    migrateWithoutVersion(opened, 3);
    const QString section = QStringLiteral("{3308519a-3368-40fb-8371-9b4e39bf4cb2}");
    QCOMPARE(MigrationFixture::rows(opened.worker,
                                    QStringLiteral("SELECT s.id, d.name, d.velocity, d.insulation, d.type, d.favorite, "
                                                   "d.snap, d.deleted, d.timestamp FROM ce_segment AS s "
                                                   "JOIN ce_segment_detail AS d ON d.id = s.detail ORDER BY s.id")),
             QStringLiteral("x1|S \"1\"|170|i1|%1|0|0|1|2020-03-08 02:30:00.123; x2|NULL|NULL|i2|%1|0|NULL|NULL|NULL; "
                            "x3|lost|160|i9|%1|0|0|0|NULL; x4|joint|0|NULL|j1|0|0|0|NULL")
                 .arg(section));
    QCOMPARE(MigrationFixture::rows(opened.worker, QStringLiteral("SELECT count(*) FROM ce_segment_detail")),
             QStringLiteral("4"));
}

void EditorMigrationTest::leavesNothingOfAFailedStep_data()
{
    QTest::addColumn<int>("backend");
    QTest::addColumn<int>("version");
    QTest::addColumn<QString>("obstacle");
    QTest::addColumn<QString>("removal");
    const auto addStep = [](int version, const char* obstacle, const char* removal) {
        addCase(QString::number(version), version, QString::fromLatin1(obstacle), QString::fromLatin1(removal));
    };
    addStep(0, "CREATE VIEW ce_insulation AS SELECT 1 AS a", "DROP VIEW ce_insulation");
    addStep(1, "CREATE VIEW ce_segment_detail AS SELECT 1 AS a", "DROP VIEW ce_segment_detail");
    addStep(2, "ALTER TABLE ce_segment RENAME COLUMN phase TO other",
            "ALTER TABLE ce_segment RENAME COLUMN other TO phase");
    addStep(3, "ce_segment_detail", "");
    addStep(4, "CREATE VIEW evaluation AS SELECT 1 AS a", "DROP VIEW evaluation");
    addStep(5, "evaluation", "");
    addStep(6, "CREATE VIEW cablebook_measures AS SELECT 1 AS a", "DROP VIEW cablebook_measures");
    addStep(7, "ce_segment_detail", "");
    addStep(8, "ce_switchgear", "");
    // SQLite ends the transaction by itself then; what came after that would stay.
    QTest::newRow("SQLite, full disk") << static_cast<int>(Enumerations::SQLite3) << 1
                                       << QStringLiteral("PRAGMA max_page_count = 1")
                                       << QStringLiteral("PRAGMA max_page_count = 1000000");
}

void EditorMigrationTest::leavesNothingOfAFailedStep()
{
    QFETCH(int, version);
    QFETCH(QString, obstacle);
    QFETCH(QString, removal);
    const QString deletion = QStringLiteral("DELETE");
    Opened opened;
    MigrationFixture::create(opened.worker, MigrationFixture::Editor, version, MigrationFixture::With);
    if (removal.isEmpty())
        MigrationFixture::forbid(opened.worker, deletion, obstacle);
    else
        MigrationFixture::execute(opened.worker, {obstacle});
    const QStringList schema = MigrationFixture::schema(opened.worker);
    const QStringList content = MigrationFixture::content(opened.worker);
    const LogCapture log;
    const Database::FailureWatch watch;
    QVERIFY(!opened.manager.Migrate());
    QVERIFY(!watch.reason().isEmpty() && !watch.reason().contains(QStringLiteral("broken off")));
    QVERIFY(log.contains(watch.reason()));
    QCOMPARE(MigrationFixture::backupContent(opened.worker, opened.database), QStringList());
    QCOMPARE(opened.manager.DbVersion(), static_cast<quint32>(version));
    QCOMPARE(MigrationFixture::schema(opened.worker), schema);
    QCOMPARE(MigrationFixture::content(opened.worker), content);
    static const char* const steps[] = {"Cables_01",     "Cables_02", "Cables_03", "Cables_04", "Evaluation_01",
                                        "Evaluation_02", "Cables_05", "Cables_06", "Cables_07"};
    QVERIFY(log.messages(QtWarningMsg, category).last().contains(QLatin1String(steps[version])));

    if (removal.isEmpty())
        MigrationFixture::allow(opened.worker, deletion, obstacle);
    else
        MigrationFixture::execute(opened.worker, {removal});
    QVERIFY(opened.manager.Migrate());
    QCOMPARE(MigrationFixture::faults(opened.worker, MigrationFixture::Editor, version, MigrationFixture::With),
             QStringList());
}

void EditorMigrationTest::readsStoredVersions_data()
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
void EditorMigrationTest::readsStoredVersions()
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
void EditorMigrationTest::goesOnWhereAnotherProgramIs()
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

void EditorMigrationTest::tellsWhyACommitFails()
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
    QVERIFY(log.messages(QtWarningMsg, category).last().contains(watch.reason()));
}

void EditorMigrationTest::callsNothingMigratedThatStays()
{
    const LogCapture log;
    Opened opened;
    MigrationFixture::create(opened.worker, MigrationFixture::Editor, 5, MigrationFixture::Without);
    MigrationFixture::execute(opened.worker, {QStringLiteral("DELETE FROM evaluation WHERE id < 3")});
    QVERIFY(opened.manager.Migrate());
    QCOMPARE(opened.manager.migrationMessages(), QStringList());
    QCOMPARE(MigrationFixture::rows(opened.worker, QStringLiteral("SELECT id FROM evaluation ORDER BY id")),
             QStringLiteral("3; 4"));
}

/// Whatever others have put on a table that a step rebuilds. What fits the new layout no more is told.
void EditorMigrationTest::keepsWhatOthersPutOnATable()
{
    const LogCapture log;
    Opened opened;
    MigrationFixture::create(opened.worker, MigrationFixture::Editor, 1, MigrationFixture::With);
    MigrationFixture::execute(
        opened.worker,
        {QStringLiteral("CREATE UNIQUE INDEX \"My index\" ON ce_cable (number, city) WHERE snap IS NULL"),
         QStringLiteral("CREATE INDEX speed ON ce_segment (velocity)")});
    QString select = QStringLiteral("SELECT sql FROM sqlite_master WHERE tbl_name = 'ce_cable' AND type = 'index'");
    if (opened.database.type() == Enumerations::Postgres) {
        for (const char* statement :
             {"GRANT SELECT, DELETE ON ce_cable TO PUBLIC", "GRANT UPDATE (number) ON ce_cable TO PUBLIC",
              "ALTER DEFAULT PRIVILEGES GRANT INSERT ON TABLES TO PUBLIC",
              "ALTER TABLE ce_cable ADD CONSTRAINT short CHECK (length < 99999)",
              "COMMENT ON TABLE ce_cable IS 'It''s \"all\" ours'",
              "COMMENT ON COLUMN ce_cable.number IS 'on the plate'", "COMMENT ON INDEX \"My index\" IS 'for searching'",
              "COMMENT ON CONSTRAINT short ON ce_cable IS 'why'"})
            MigrationFixture::execute(opened.worker, {QString::fromLatin1(statement)});
        select = QStringLiteral(
            "SELECT (SELECT array_agg(a::text ORDER BY a::text) FROM aclexplode(relacl) AS a), obj_description(oid), "
            "(SELECT array_agg(pg_get_indexdef(indexrelid) || coalesce(obj_description(indexrelid, 'pg_class'), '') "
            "ORDER BY indexrelid::regclass::text) FROM pg_index WHERE indrelid = oid), "
            "(SELECT array_agg(pg_get_constraintdef(c.oid) || coalesce(obj_description(c.oid), '') ORDER BY conname) "
            "FROM pg_constraint AS c WHERE conrelid = pg_class.oid), "
            "(SELECT array_agg(attname || attacl::text || col_description(attrelid, attnum)) FROM pg_attribute "
            "WHERE attrelid = oid AND attname = 'number') FROM pg_class WHERE relname = 'ce_cable'");
    }
    const QString before = MigrationFixture::rows(opened.worker, select);
    QVERIFY(opened.manager.Migrate());
    QCOMPARE(MigrationFixture::rows(opened.worker, select), before);
    QVERIFY(log.contains(QStringLiteral("Lost with the old layout of its table: CREATE INDEX speed")));
    QCOMPARE(MigrationFixture::faults(opened.worker, MigrationFixture::Editor, 1, MigrationFixture::With),
             QStringList());
}

void EditorMigrationTest::survivesWithoutDatabase()
{
    const LogCapture log;
    EditorMigrationManager idle;
    QVERIFY(!idle.WaitForConnected());
    QCOMPARE(idle.DbVersion(), idle.InvalidVersion());
    QCOMPARE(idle.MigrationSteps(), 0U);
    QVERIFY(!idle.Migrate());

    const auto refused = serverConfig(QStringLiteral("none"));
    refused->SetPort(1);
    const auto unknown = serverConfig(QStringLiteral("none"));
    unknown->SetType(Enumerations::None);
    TestDatabase noDatabase(Enumerations::SQLite3);
    QFile file(noDatabase.name());
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("no database") > 0);
    file.close();
    const QVector<QPair<std::shared_ptr<Interfaces::IConfig>, bool>> databases{
        {refused, true}, {noDatabase.config(), false}, {unknown, false}};
    for (const auto& database : databases) {
        RunningWorker worker(database.first);
        EditorMigrationManager manager;
        manager.setDbWorker(worker.get());
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!manager.WaitForConnected());
        QCOMPARE(timer.elapsed() >= 1500, database.second);
        QVERIFY(timer.elapsed() < 5000);
        QCOMPARE(manager.DbVersion(), manager.InvalidVersion());
        QVERIFY(!manager.Migrate());
    }
}

/// It accepts connections and says nothing, like a machine behind a broken network.
void EditorMigrationTest::asksASilentServerOnce()
{
    const LogCapture log;
    const int server = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    QVERIFY(::bind(server, reinterpret_cast<sockaddr*>(&address), size) == 0 && ::listen(server, 10) == 0);
    QVERIFY(::getsockname(server, reinterpret_cast<sockaddr*>(&address), &size) == 0);
    const auto config = serverConfig(QStringLiteral("none"));
    config->SetHostName(QStringLiteral("127.0.0.1"));
    config->SetPort(ntohs(address.sin_port));
    const RunningWorker worker(config);
    EditorMigrationManager manager;
    manager.setDbWorker(worker.get());
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!manager.WaitForConnected());
    QVERIFY2(timer.elapsed() < 7000, qPrintable(QString::number(timer.elapsed())));
    ::close(server);
}

void EditorMigrationTest::takesNoLockedFileForAFreshOne()
{
    const LogCapture log;
    TestDatabase database(Enumerations::SQLite3);
    RunningWorker worker(database.config());
    EditorMigrationManager manager;
    manager.setDbWorker(worker.get());
    MigrationFixture::create(worker, MigrationFixture::Editor, 1, MigrationFixture::With);
    {
        const FileLocker locker(database.name());
        QVERIFY(locker.isHeld());
        QCOMPARE(manager.DbVersion(), manager.InvalidVersion());
    }
    QCOMPARE(manager.DbVersion(), 1U);
}

DATAACCESS_TEST(EditorMigrationTest)

#include "EditorMigrationTest.moc"
