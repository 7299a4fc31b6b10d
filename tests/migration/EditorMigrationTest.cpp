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

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

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

    const QString discarded = QStringLiteral("Discarded 1 rows of \"%1\"");
    QCOMPARE(log.contains(discarded.arg(QStringLiteral("CE_STATION"))), version == 0);
    QCOMPARE(log.contains(discarded.arg(QStringLiteral("evaluation"))), version == 5 && withCableBook);

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
              "ALTER TABLE ce_cable ADD CONSTRAINT short CHECK (city <> 'here')",
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
