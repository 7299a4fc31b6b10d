#include "database/Failure.h"
#include "migration/MigrationDatabase.h"
#include "migration/MigrationModule.h"
#include "migration/SchemaChange.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"

#include <QRegularExpression>

using namespace DataAccess;
using namespace TestSupport;

namespace {

const QString s_editorLog = QStringLiteral("qor.migration.editor");
const QString s_pdLog = QStringLiteral("qor.migration.pd");

Q_LOGGING_CATEGORY(lcNotes, "notes")

/// A family of an application's own.
class NotesMigration : public Manager::AbstractMigrationManager
{
    const Manager::MigrationModule& module() const override
    {
        using namespace Manager;
        using namespace Columns;
        static const TableDefinition note{QStringLiteral("note"), {text("id")}, {QStringLiteral("PRIMARY KEY (id)")}};
        static const MigrationModule notes(
            "NotesVersion", lcNotes, "step %1", "",
            {{"first",
              [](SchemaChange& schema) {
                  schema.createVersionTables();
                  schema.createTables();
                  schema.execute(QStringLiteral("INSERT INTO note (id) VALUES ('n')"));
              },
              "creates the notes",
              {note}},
             {"second",
              [](SchemaChange& schema) {
                  schema.rebuild(QStringLiteral("note"), QStringLiteral("INSERT INTO note_tmp SELECT id FROM note"),
                                 QStringLiteral("INSERT INTO note (id, size) SELECT id, 5 FROM note_tmp"));
                  schema.addMessage(QStringLiteral("Notes have a size"));
              },
              "notes get a size",
              {note.with(integer("size", 4), "")}}});
        return notes;
    }
};

} // namespace

/// What the steps make of databases of every version, also when they fail, and run again.
class MigrationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void migratesFromEveryVersion_data()
    {
        QTest::addColumn<int>("backend");
        QTest::addColumn<bool>("isEditor");
        QTest::addColumn<int>("version");
        QTest::addColumn<bool>("withCableBook");
        const int empty = MigrationDatabase::emptyVersion;
        for (int version = empty; version < MigrationDatabase::currentVersion(MigrationDatabase::Editor); ++version) {
            addCase(QStringLiteral("version %1, each step twice").arg(version), true, version, false);
            addCase(QStringLiteral("version %1, cable book").arg(version), true, version, true);
        }
        addCase(QStringLiteral("results, empty"), false, empty, false);
        for (int version = 1; version < MigrationDatabase::currentVersion(MigrationDatabase::Pd); ++version)
            addCase(QStringLiteral("results, version %1, each step twice").arg(version), false, version, false);
    }
    void migratesFromEveryVersion()
    {
        QFETCH(bool, isEditor);
        QFETCH(int, version);
        QFETCH(bool, withCableBook);
        const auto family = isEditor ? MigrationDatabase::Editor : MigrationDatabase::Pd;
        const LogCapture log;
        MigrationDatabase db(family, version, withCableBook ? MigrationDatabase::With : MigrationDatabase::Without);
        const auto from = static_cast<quint32>(qMax(version, 0));
        const auto current = static_cast<quint32>(MigrationDatabase::currentVersion(family));
        QCOMPARE(db.manager().MigrationSteps(), current - from);
        // In an empty database there is no table yet that could refuse a version.
        for (auto step = from + 1; !withCableBook && version >= 0 && step <= current; ++step)
            db.migrateWithoutVersion(static_cast<int>(step));
        QVERIFY(db.manager().Migrate());
        QCOMPARE(db.manager().DbVersion(), current);
        QCOMPARE(db.faults(), QStringList());
        const QString prefix =
            isEditor ? QString()
                     : QStringLiteral("bool __cdecl DataAccess::Manager::PdMigrationManager::Migrate(void) ");
        QVERIFY(log.messages(QtDebugMsg, isEditor ? s_editorLog : s_pdLog)
                    .contains(prefix + QStringLiteral("Migrate FROM: %1 TO %2").arg(from).arg(current)));

        const QString discarded = QStringLiteral("Discarded 1 rows of \"%1\"");
        QCOMPARE(log.contains(discarded.arg(QStringLiteral("CE_STATION"))), isEditor && version == 0);
        QCOMPARE(log.contains(discarded.arg(QStringLiteral("evaluation"))), withCableBook && version == 5);
        QCOMPARE(log.contains(QStringLiteral("Evaluations that could not be migrated stay in \"evaluation\" : 2")),
                 isEditor && version == 5 && !withCableBook);
        QCOMPARE(log.contains(QStringLiteral("FOREIGN KEY(mid) REFERENCES measures(id)")),
                 isEditor && !db.isFile() && !withCableBook && version != 0 && version < 5);
        if (withCableBook) {
            QCOMPARE(db.manager().migrationMessages().size(), version == 5 ? 1 : 0);
            const QString deleted = QStringLiteral("Deleted %1 unused items in %2");
            QCOMPARE(log.contains(deleted.arg(1).arg(QStringLiteral("ce_switchgear"))), version > 0 && version < 9);
            QCOMPARE(log.contains(deleted.arg(1).arg(QStringLiteral("ce_segment_details"))),
                     version >= 4 && version < 8);
        }

        // Each row's schema is compared with that of the first, which began with an empty database.
        static QMap<QPair<bool, QPair<bool, bool>>, QStringList> fresh;
        const QStringList schema = db.schema();
        QStringList& expected = fresh[{isEditor, {db.isFile(), withCableBook}}];
        if (version == MigrationDatabase::emptyVersion)
            expected = schema;
        QCOMPARE(schema, expected);

        const LogCapture second;
        QVERIFY(db.manager().Migrate());
        QVERIFY(!second.contains(QStringLiteral("Migrate FROM")));
    }

    void givesEachSegmentItsDetail_data() { addBackends(); }
    void givesEachSegmentItsDetail()
    {
        const LogCapture log;
        MigrationDatabase db(MigrationDatabase::Editor, 1);
        db.migrateWithoutVersion(2);
        db.migrateWithoutVersion(3);
        QCOMPARE(
            db.rows(QStringLiteral("SELECT s.id, d.name, d.velocity, d.insulation, d.type, d.favorite, d.snap, "
                                   "d.deleted, d.timestamp FROM ce_segment AS s "
                                   "JOIN ce_segment_detail AS d ON d.id = s.detail ORDER BY s.id")),
            QStringLiteral("x1|S \"1\"|170|i1|%1|0|0|1|2020-03-08 02:30:00.123; x2|NULL|NULL|i2|%1|0|NULL|NULL|NULL; "
                           "x3|lost|160|i9|%1|0|0|0|NULL; x4|joint|0|NULL|j1|0|0|0|NULL")
                .arg(QStringLiteral("{3308519a-3368-40fb-8371-9b4e39bf4cb2}")));
        QCOMPARE(db.rows(QStringLiteral("SELECT count(*) FROM ce_segment_detail")), QStringLiteral("4"));
    }

    void leavesNothingOfAFailedStep_data()
    {
        QTest::addColumn<int>("backend");
        QTest::addColumn<int>("version");
        QTest::addColumn<QString>("step");
        QTest::addColumn<QString>("obstacle");
        QTest::addColumn<QString>("removal");
        const auto addStep = [](int version, const char* step, const char* obstacle, const char* removal) {
            addCase(QString::fromLatin1(step), version, QString::fromLatin1(step), QString::fromLatin1(obstacle),
                    QString::fromLatin1(removal));
        };
        // Without a removal, a table whose rows cannot be deleted.
        addStep(0, "Cables_01", "CREATE VIEW ce_insulation AS SELECT 1 AS a", "DROP VIEW ce_insulation");
        addStep(1, "Cables_02", "CREATE VIEW ce_segment_detail AS SELECT 1 AS a", "DROP VIEW ce_segment_detail");
        addStep(2, "Cables_03", "ALTER TABLE ce_segment RENAME COLUMN phase TO other",
                "ALTER TABLE ce_segment RENAME COLUMN other TO phase");
        addStep(3, "Cables_04", "ce_segment_detail", "");
        addStep(4, "Evaluation_01", "CREATE VIEW evaluation AS SELECT 1 AS a", "DROP VIEW evaluation");
        addStep(5, "Evaluation_02", "evaluation", "");
        addStep(6, "Cables_05", "CREATE VIEW cablebook_measures AS SELECT 1 AS a", "DROP VIEW cablebook_measures");
        addStep(7, "Cables_06", "ce_segment_detail", "");
        addStep(8, "Cables_07", "ce_switchgear", "");
        // SQLite ends the transaction by itself then; what came after that would stay.
        QTest::newRow("SQLite, full disk")
            << static_cast<int>(Enumerations::SQLite3) << 1 << QStringLiteral("Cables_02")
            << QStringLiteral("PRAGMA max_page_count = 1") << QStringLiteral("PRAGMA max_page_count = 1000000");
    }
    void leavesNothingOfAFailedStep()
    {
        QFETCH(int, version);
        QFETCH(QString, step);
        QFETCH(QString, obstacle);
        QFETCH(QString, removal);
        const QString deletion = QStringLiteral("DELETE");
        MigrationDatabase db(MigrationDatabase::Editor, version, MigrationDatabase::With);
        if (removal.isEmpty())
            db.forbid(deletion, obstacle);
        else
            db.execute({obstacle});
        const QStringList schema = db.schema();
        const QStringList content = db.content();
        const LogCapture log;
        const Database::FailureWatch watch;
        QVERIFY(!db.manager().Migrate());
        QVERIFY(!watch.reason().isEmpty() && !watch.reason().contains(QStringLiteral("broken off")));
        QVERIFY(log.contains(watch.reason()));
        QVERIFY(log.messages(QtWarningMsg, s_editorLog)
                    .last()
                    .startsWith(QStringLiteral("bool DataAccess::Manager::EditorMigrationManager::%1() ").arg(step)));
        QCOMPARE(db.backupContent(), QStringList());
        QCOMPARE(db.manager().DbVersion(), static_cast<quint32>(version));
        QCOMPARE(db.schema(), schema);
        QCOMPARE(db.content(), content);

        if (removal.isEmpty())
            db.allow(deletion, obstacle);
        else
            db.execute({removal});
        QVERIFY(db.manager().Migrate());
        QCOMPARE(db.faults(), QStringList());
    }

    void callsNothingMigratedThatStays_data() { addBackends(); }
    void callsNothingMigratedThatStays()
    {
        const LogCapture log;
        MigrationDatabase db(MigrationDatabase::Editor, 5);
        db.execute({QStringLiteral("DELETE FROM evaluation WHERE id < 3")});
        QVERIFY(db.manager().Migrate());
        QCOMPARE(db.manager().migrationMessages(), QStringList());
        QCOMPARE(db.rows(QStringLiteral("SELECT id FROM evaluation ORDER BY id")), QStringLiteral("3; 4"));
    }

    void keepsWhatOthersPutOnATable_data() { addBackends(); }
    /// Whatever others have put on a table that a step rebuilds. What fits the new layout no more is told.
    void keepsWhatOthersPutOnATable()
    {
        const LogCapture log;
        MigrationDatabase db(MigrationDatabase::Editor, 1, MigrationDatabase::With);
        db.execute({QStringLiteral("CREATE UNIQUE INDEX \"My index\" ON ce_cable (number, city) WHERE snap IS NULL"),
                    QStringLiteral("CREATE INDEX speed ON ce_segment (velocity)")});
        QString select = QStringLiteral("SELECT sql FROM sqlite_master WHERE tbl_name = 'ce_cable' AND type = 'index'");
        if (!db.isFile()) {
            for (const char* statement :
                 {"GRANT SELECT, DELETE ON ce_cable TO PUBLIC", "GRANT UPDATE (number) ON ce_cable TO PUBLIC",
                  "ALTER DEFAULT PRIVILEGES GRANT INSERT ON TABLES TO PUBLIC",
                  "ALTER TABLE ce_cable ADD CONSTRAINT short CHECK (city <> 'here')",
                  "COMMENT ON TABLE ce_cable IS 'It''s \"all\" ours'",
                  "COMMENT ON COLUMN ce_cable.number IS 'on the plate'",
                  "COMMENT ON INDEX \"My index\" IS 'for searching'",
                  "COMMENT ON CONSTRAINT short ON ce_cable IS 'why'"})
                db.execute({QString::fromLatin1(statement)});
            select = QStringLiteral(
                "SELECT (SELECT array_agg(a::text ORDER BY a::text) FROM aclexplode(relacl) AS a), obj_description(oid), "
                "(SELECT array_agg(pg_get_indexdef(indexrelid) || coalesce(obj_description(indexrelid, 'pg_class'), '') "
                "ORDER BY indexrelid::regclass::text) FROM pg_index WHERE indrelid = oid), "
                "(SELECT array_agg(pg_get_constraintdef(c.oid) || coalesce(obj_description(c.oid), '') ORDER BY conname) "
                "FROM pg_constraint AS c WHERE conrelid = pg_class.oid), "
                "(SELECT array_agg(attname || attacl::text || col_description(attrelid, attnum)) FROM pg_attribute "
                "WHERE attrelid = oid AND attname = 'number') FROM pg_class WHERE relname = 'ce_cable'");
        }
        const QString before = db.rows(select);
        QVERIFY(db.manager().Migrate());
        QCOMPARE(db.rows(select), before);
        QVERIFY(log.contains(QStringLiteral("Lost with the old layout of its table: CREATE INDEX speed")));
        QCOMPARE(db.faults(), QStringList());
    }

    void bringsBackWhatACrashLeftBehind_data()
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
        addCase(QStringLiteral("only there"), 4, forBoth({rename, other}), old, none);
        addCase(QStringLiteral("there too"), 4, forBoth({copy, other}), old, none);
        addCase(QStringLiteral("new layout"), 8, forBoth({copy, other}), QStringLiteral("1|4.25; 2|0"),
                QStringLiteral("1|11.25; 2|NULL"));
    }
    void bringsBackWhatACrashLeftBehind()
    {
        QFETCH(int, version);
        QFETCH(QStringList, statements);
        const LogCapture log;
        MigrationDatabase db(MigrationDatabase::Pd, version);
        db.execute(statements + QStringList(QStringLiteral("UPDATE feature_defaults SET value = '4'")));
        QVERIFY(db.manager().Migrate());
        QTEST(db.rows(QStringLiteral("SELECT id, sensitivity_level FROM pd_iec_overview ORDER BY id")), "overviews");
        QTEST(db.rows(QStringLiteral("SELECT id, max_applied_voltage FROM pd_summary ORDER BY id")), "summaries");
        // Of one id there can be one row only.
        QCOMPARE(log.contains(QStringLiteral("Discarded 1 rows of \"pd_summary_old\"")),
                 statements.first().startsWith(QLatin1String("CREATE")));
        QVERIFY(db.schema().filter(QStringLiteral("_old")).isEmpty());
    }

    void tellsOfPdTables_data() { addBackends(); }
    /// In the tables themselves, and in the log where there are such already.
    void tellsOfPdTables()
    {
        const LogCapture first;
        MigrationDatabase db(MigrationDatabase::Pd, 1);
        QVERIFY(db.manager().Migrate());
        if (db.isFile()) {
            const QString summary = db.rows(QStringLiteral("SELECT sql FROM sqlite_master WHERE name = 'pd_summary'"));
            QVERIFY(summary.contains(QStringLiteral("\"vwd\" INTEGER , -- associated task has ???\n")));
            QVERIFY(summary.contains(QStringLiteral("\"deleted\" INTEGER , -- \n")));
        }

        db.execute({QStringLiteral("UPDATE feature_defaults SET value = '2'")});
        const LogCapture log;
        QVERIFY(db.manager().Migrate());
        const QStringList warnings = log.messages(QtWarningMsg, s_pdLog);
        QCOMPARE(warnings.size(), 8);
        QCOMPARE(warnings.first(), QStringLiteral("Table: \"pd_evaluation\" allready exists!"));
        QCOMPARE(warnings.last(), QStringLiteral("Table: \"pd_lbdiagram\" already exists!"));
    }

    void runsStepsOfAnApplication_data() { addBackends(); }
    /// The settings tables are those of whichever family comes first.
    void runsStepsOfAnApplication()
    {
        const LogCapture log;
        MigrationDatabase db(MigrationDatabase::Editor, MigrationDatabase::emptyVersion);
        NotesMigration notes;
        notes.setDbWorker(db.worker());
        QCOMPARE(notes.MigrationSteps(), 2U);
        QVERIFY(notes.Migrate());
        QCOMPARE(notes.migrationMessages(), QStringList(QStringLiteral("Notes have a size")));
        QCOMPARE(db.rows(QStringLiteral("SELECT id, size FROM note")), QStringLiteral("n|5"));
        QVERIFY(db.manager().Migrate());
        QCOMPARE(db.faults(), QStringList());
        QCOMPARE(notes.DbVersion(), 2U);
    }
};

DATAACCESS_TEST(MigrationTest)

#include "MigrationTest.moc"
