#include "database/IDatabase.h"
#include "migration/EditorFixture.h"
#include "migration/editor/EditorMigrationManager.h"
#include "migration/pd/PdMigrationManager.h"
#include "support/LogCapture.h"
#include "support/TestDatabase.h"
#include "support/TestMain.h"

#include <QTest>

using namespace DataAccess;
using namespace TestSupport;
using EditorFixture::execute;
using EditorFixture::rows;
using Manager::PdMigrationManager;

namespace {

const QString category = QStringLiteral("qor.migration.pd");

/// A table as databases in the field have it from version @p from to version @p until.
struct Table
{
    int from;
    int until;
    const char* name;
    /// T text, N number, I integer of 4 and J of 8 bytes, L Boolean, Z time stamp, B bytes.
    const char* columns;
};

constexpr Table tables[] = {
    {1, 8, "pd_file", "T id,T name,B data,B hash,T report,L snap,L deleted,Z timestamp"},
    {1, 8, "pd_task",
     "T id,T cable,Z creationdate,T station,T tester,T path,T comment,T devices,T kvtrrecommentation,L snap,L deleted,Z timestamp"},
    {1, 8, "pd_report", "T id,T task,Z creationtimestamp,I flags,T recommentation,L snap,L deleted,Z timestamp"},
    {1, 8, "pd_mapping",
     "T id,T report,N load,I phase,I class,L polarity,N voltage,N position,I mode,L snap,L deleted,Z timestamp"},
    {2, 8, "pd_report_mapping", "T reportid,J reportindex"},
    {2, 8, "pd_filter", "T reportid,T key,T value"},
    {2, 8, "pd_iec",
     "T reportid,I phase,N groundnoise,N frequency,N pdivvoltage,N pdevvoltage,N pdivmaxcharge,N pdu0maxcharge,N pdu0medcharge,N pdu01_7maxcharge,N pdu01_7medcharge,N pdu02_0maxcharge,N pdu02_0medcharge,Z timestamp"},
    {3, 8, "pd_evaluation", "R taskid,T comment,T evaluation,I manual,I oldcable,I eventselectionmodel"},
    {4, 8, "pd_mapping_event",
     "T id,T report_id,N load,I phase,I class,L polarity,N voltage,N position,I mode,L snap,L deleted,Z timestamp"},
    {4, 4, "pd_iec_overview",
     "T id,T report_id,I phase,N groundnoise,N frequency,N pdivvoltage,N pdevvoltage,N pdivmaxcharge,T pdmaxcharges,T pdmedcharges,L snap,L deleted,Z timestamp"},
    {5, 8, "pd_iec_overview",
     "T id,T report_id,I phase,N groundnoise,N sensitivity_level,N frequency,N pdivvoltage,N pdevvoltage,N pdivmaxcharge,T pdmaxcharges,T pdmedcharges,L snap,L deleted,Z timestamp"},
    {4, 6, "pd_summary",
     "T id,T report_id,L pdiv,L pdev,L groundnoise,L data,L vwd,L dac_pos,L dac_neg,L vlf_cr,L vlf_sin,L snap,L deleted,Z timestamp"},
    {7, 8, "pd_summary",
     "T id,T report_id,L pdiv,L pdev,L groundnoise,L data,L vwd,L dac_pos,L dac_neg,L vlf_cr,L vlf_sin,N max_applied_voltage,L snap,L deleted,Z timestamp"},
    {6, 8, "pd_task_info",
     "T id,T report_id,T pd_version,T system_type,T serial_number,T calibration_date,L snap,L deleted,Z timestamp"},
    {8, 8, "pd_lbdiagram",
     "T id,T report_id,L phase1visible,L phase2visible,L phase3visible,I filterclass,N filtervoltagemin,N filtervoltagemax,L snap,L deleted,Z timestamp"},
};

QString typeOf(QChar kind, bool postgres)
{
    switch (kind.toLatin1()) {
    case 'B':
        return postgres ? QStringLiteral("BYTEA") : QStringLiteral("TEXT");
    case 'I':
        return QStringLiteral("INTEGER");
    case 'J':
        return postgres ? QStringLiteral("BIGINT") : QStringLiteral("INTEGER");
    case 'L':
        return postgres ? QStringLiteral("BOOLEAN") : QStringLiteral("INTEGER");
    case 'N':
        return postgres ? QStringLiteral("NUMERIC") : QStringLiteral("REAL");
    case 'Z':
        return postgres ? QStringLiteral("TIMESTAMP") : QStringLiteral("TEXT");
    case 'R':
        return QStringLiteral("TEXT REFERENCES pd_task(id) ON DELETE CASCADE");
    default:
        return QStringLiteral("TEXT");
    }
}

/// A value of a row: another one in each column, and NULL in some.
QString valueOf(const QString& column, int position, bool postgres)
{
    switch (column.front().toLatin1()) {
    case 'I':
    case 'J':
        return QString::number(position);
    case 'L':
        return postgres ? (position % 2 == 0 ? QStringLiteral("TRUE") : QStringLiteral("FALSE"))
                        : QString::number(1 - position % 2);
    case 'N':
        return position % 3 == 0 ? QStringLiteral("NULL") : QStringLiteral("%1.25").arg(position);
    case 'Z':
        return QStringLiteral("'2020-03-08 02:30:00.123'");
    case 'R':
        return QStringLiteral("'pd_task'");
    default:
        return column.mid(2) == QLatin1String("id") ? QString() : QStringLiteral("'it''s %1'").arg(position);
    }
}

/// Makes the tables of @p version with a row each, and stores the version.
void create(RunningWorker& worker, int version, bool postgres)
{
    execute(
        worker,
        {QStringLiteral(
             "CREATE TABLE features (id %1 PRIMARY KEY, name VARCHAR(28), type CHAR(1), module VARCHAR(28), temp_changeable %2, changeable %2, admin %2)")
             .arg(typeOf(QLatin1Char('J'), postgres), typeOf(QLatin1Char('L'), postgres)),
         QStringLiteral(
             "CREATE TABLE feature_defaults (featureid %1 PRIMARY KEY REFERENCES features(id), value VARCHAR(44), changed_at %2)")
             .arg(typeOf(QLatin1Char('J'), postgres), typeOf(QLatin1Char('Z'), postgres)),
         QStringLiteral("INSERT INTO features (id, name, type, module) VALUES (7, 'PdVersion', 'I', '')"),
         QStringLiteral("INSERT INTO feature_defaults (featureid, value) VALUES (7, '%1')").arg(version)});
    for (const Table& table : tables) {
        if (version < table.from || version > table.until)
            continue;
        const QString name = QString::fromLatin1(table.name);
        QStringList definitions;
        QStringList values;
        const QStringList columns = QString::fromLatin1(table.columns).split(QLatin1Char(','));
        for (const QString& column : columns) {
            definitions.append(QStringLiteral("%1 %2").arg(column.mid(2), typeOf(column.front(), postgres)));
            const QString value = valueOf(column, values.size(), postgres);
            values.append(value.isEmpty() ? QStringLiteral("'%1'").arg(name) : value);
        }
        if (columns.front() == QLatin1String("T id") || columns.front() == QLatin1String("R taskid"))
            definitions.append(QStringLiteral("PRIMARY KEY (%1)").arg(columns.front().mid(2)));
        execute(worker, {QStringLiteral("CREATE TABLE %1 (%2)").arg(name, definitions.join(QStringLiteral(", "))),
                         QStringLiteral("INSERT INTO %1 VALUES (%2)").arg(name, values.join(QStringLiteral(", ")))});
        if (postgres && table.from == 1)
            execute(worker, {QStringLiteral("CREATE SEQUENCE %1_s").arg(name)});
    }
}

/// The columns, keys and sequences of the tables.
QString schema(RunningWorker& worker, bool postgres)
{
    if (!postgres)
        return rows(
                   worker,
                   QStringLiteral(
                       "SELECT m.name, p.* FROM sqlite_master AS m JOIN pragma_table_info(m.name) AS p WHERE m.type = 'table' AND m.name LIKE 'pd_%' ORDER BY m.name, p.cid")) +
               rows(worker, QStringLiteral("SELECT p.* FROM pragma_foreign_key_list('pd_evaluation') AS p"));
    return rows(
               worker,
               QStringLiteral(
                   "SELECT table_name, ordinal_position, column_name, data_type, is_nullable FROM information_schema.columns WHERE table_name LIKE 'pd_%' ORDER BY 1, 2")) +
           rows(
               worker,
               QStringLiteral(
                   "SELECT conrelid::regclass::text, pg_get_constraintdef(oid) FROM pg_constraint WHERE conrelid::regclass::text LIKE 'pd_%' ORDER BY 1, 2")) +
           rows(worker,
                QStringLiteral("SELECT sequencename FROM pg_sequences WHERE sequencename LIKE 'pd_%' ORDER BY 1"));
}

struct Opened
{
    Opened() { manager.setDbWorker(worker.get()); }

    bool isPostgres() const { return database.type() == Enumerations::Postgres; }
    /// The rows of a table at @p version, in the layout of the last version, as text.
    QString row(const char* table, const char* added = nullptr, const char* value = nullptr)
    {
        QString columns;
        for (const Table& layout : tables) {
            if (qstrcmp(layout.name, table) == 0 && layout.until == 8)
                columns = QString::fromLatin1(layout.columns);
        }
        QStringList names;
        for (const QString& column : columns.split(QLatin1Char(',')))
            names.append(column.mid(2) == QLatin1String(added) ? QString::fromLatin1(value) : column.mid(2));
        return rows(
            worker,
            QStringLiteral("SELECT %1 FROM %2").arg(names.join(QStringLiteral(", ")), QString::fromLatin1(table)));
    }

    TestDatabase database;
    RunningWorker worker{database.config()};
    PdMigrationManager manager;
};

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
    for (int version = 1; version < 8; ++version) {
        QTest::addRow("SQLite, %d", version) << static_cast<int>(Enumerations::SQLite3) << version;
        QTest::addRow("PostgreSQL, %d", version) << static_cast<int>(Enumerations::Postgres) << version;
    }
}

void PdMigrationTest::migratesFromEveryVersion()
{
    QFETCH(int, version);
    const LogCapture log;
    Opened fresh;
    QVERIFY(fresh.manager.Migrate());
    QCOMPARE(fresh.manager.DbVersion(), 8U);

    Opened opened;
    create(opened.worker, version, opened.isPostgres());
    QStringList before;
    for (const Table& table : tables) {
        if (version >= table.from && version <= table.until && table.until == 8)
            before.append(opened.row(table.name));
    }
    const QString overview = rows(opened.worker, QStringLiteral("SELECT * FROM pd_file"));
    QCOMPARE(opened.manager.MigrationSteps(), 8U - static_cast<unsigned int>(version));
    QVERIFY(opened.manager.Migrate());
    QCOMPARE(schema(opened.worker, opened.isPostgres()), schema(fresh.worker, fresh.isPostgres()));
    QCOMPARE(rows(opened.worker, QStringLiteral("SELECT * FROM pd_file")), overview);
    QStringList after;
    for (const Table& table : tables) {
        if (version >= table.from && version <= table.until && table.until == 8)
            after.append(opened.row(table.name));
    }
    QCOMPARE(after, before);
    if (version == 4) {
        QCOMPARE(
            rows(
                opened.worker,
                QStringLiteral(
                    "SELECT id, report_id, phase, frequency, pdmedcharges, 10 * sensitivity_level = 0 FROM pd_iec_overview")),
            QStringLiteral("pd_iec_overview|it's 1|2|4.25|it's 9|1"));
    }
    if (version >= 4 && version <= 6) {
        QCOMPARE(
            rows(opened.worker, QStringLiteral("SELECT id, report_id, max_applied_voltage, timestamp FROM pd_summary"))
                .section(QLatin1Char('|'), 0, 2),
            QStringLiteral("pd_summary|it's 1|NULL"));
    }
    const LogCapture second;
    QVERIFY(opened.manager.Migrate());
    QCOMPARE(second.messages(QtDebugMsg, category), QStringList());
    QVERIFY(log.contains(
        QStringLiteral("bool __cdecl DataAccess::Manager::PdMigrationManager::Migrate(void) Migrate FROM: %1 TO 8")
            .arg(version)));
}

void PdMigrationTest::documentsItsTables()
{
    TestDatabase database(Enumerations::SQLite3);
    RunningWorker worker(database.config());
    PdMigrationManager manager;
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
    create(opened.worker, 4, opened.isPostgres());
    execute(opened.worker, {QStringLiteral("ALTER TABLE pd_iec_overview RENAME TO pd_iec_overview_old"),
                            QStringLiteral("CREATE TABLE pd_summary_old AS SELECT * FROM pd_summary")});
    QVERIFY(opened.manager.Migrate());
    QCOMPARE(rows(opened.worker, QStringLiteral("SELECT id FROM pd_iec_overview")), QStringLiteral("pd_iec_overview"));
    QCOMPARE(rows(opened.worker, QStringLiteral("SELECT id FROM pd_summary")), QStringLiteral("pd_summary"));
    const QStringList left = opened.worker.run([](Interfaces::IDatabase& db) { return db.Tables(); });
    QCOMPARE(left.filter(QStringLiteral("_old")), QStringList());
}

void PdMigrationTest::logsTablesThatExist()
{
    Opened opened;
    create(opened.worker, 8, opened.isPostgres());
    execute(opened.worker, {QStringLiteral("UPDATE feature_defaults SET value = '2'")});
    const LogCapture log;
    QVERIFY(opened.manager.Migrate());
    const QStringList warnings = log.messages(QtWarningMsg, category);
    QCOMPARE(warnings.size(), 8);
    QCOMPARE(warnings.first(), QStringLiteral("Table: \"pd_evaluation\" allready exists!"));
    QCOMPARE(warnings.last(), QStringLiteral("Table: \"pd_lbdiagram\" already exists!"));
    QCOMPARE(rows(opened.worker, QStringLiteral("SELECT count(*) FROM pd_iec_overview")), QStringLiteral("1"));
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
        schemas.append(schema(opened.worker, opened.isPostgres()) +
                       EditorFixture::schema(opened.worker).join(QLatin1Char('\n')));
    }
    QCOMPARE(schemas.first(), schemas.last());
}

DATAACCESS_TEST(PdMigrationTest)

#include "PdMigrationTest.moc"
