#include "ToolRun.h"
#include "support/TestMain.h"

#include <QFile>
#include <QJsonArray>
#include <QTest>

namespace {

struct Damage
{
    const char* statements;
    const char* fault;
    const char* place;
    bool isRepairable = false;
};

constexpr Damage s_damages[] = {
    {"DROP TABLE ce_owner", "table missing", "ce_owner "},
    {"ALTER TABLE pd_summary DROP COLUMN vwd", "column missing", "pd_summary vwd"},
    {"ALTER TABLE ce_point DROP COLUMN latitude; ALTER TABLE ce_point ADD latitude TEXT", "column type",
     "ce_point latitude"},
    {"ALTER TABLE ce_point ADD height REAL", "column unknown", "ce_point height"},
    {"CREATE TABLE o AS SELECT * FROM ce_owner; DROP TABLE ce_owner; ALTER TABLE o RENAME TO ce_owner", "key missing",
     "ce_owner id"},
    {"INSERT INTO features SELECT 77, name, type, module, temp_changeable, changeable, admin FROM features WHERE "
     "name = 'PdVersion'; INSERT INTO feature_defaults VALUES (77, '8', NULL)",
     "version rows", "features "},
    {"CREATE TABLE dataaccess_copy (begun TEXT)", "copy unfinished", " "},
    {"UPDATE ce_owner SET id = 'x'", "id invalid", "ce_owner id"},
    {"UPDATE ce_point SET id = upper(id)", "id in capitals", "ce_point id", true},
    {"INSERT INTO ce_owner SELECT upper(id), name, snap, deleted, timestamp FROM ce_owner", "id doubled",
     "ce_owner id"},
    {"UPDATE ce_phase SET cable = upper(cable)", "reference in capitals", "ce_phase cable", true},
    {"DELETE FROM ce_station", "reference dangling", "ce_cable stationa"},
    {"UPDATE pd_mapping_event SET report_id = '{6a5e27ec-0d5c-4c5f-8e2d-0d3a3f3a3f3a}'", "reference dangling",
     "pd_mapping_event report_id"},
    {"UPDATE ce_route SET points = points || '#{6a5e27ec-0d5c-4c5f-8e2d-0d3a3f3a3f3a}'", "reference dangling",
     "ce_route points"},
    {"UPDATE ce_route SET points = points || '#x'", "points invalid", "ce_route points"},
    {"UPDATE ce_cable SET voltage = 'high'", "value does not convert", "ce_cable voltage"},
    {"UPDATE ce_cable SET deleted = 7", "value does not convert", "ce_cable deleted", true},
    {"UPDATE pd_task SET creationdate = 'once'", "value does not convert", "pd_task creationdate"},
    {"UPDATE ce_cable SET installationdate = '2021-02-30'", "value does not convert", "ce_cable installationdate"},
    {"UPDATE ce_owner SET name = x'ff00'", "value does not convert", "ce_owner name"},
    {"UPDATE ce_owner SET name = CAST(x'41ff' AS TEXT)", "text invalid", "ce_owner name"},
    {"UPDATE ce_station SET image = 'bm8gaW1hZ2U='", "image unreadable", "ce_station image"},
    {"UPDATE qor_rating SET evaluation = '{'", "document unreadable", "qor_rating evaluation"},
    {"UPDATE pd_iec_overview SET pdmaxcharges = '{]'", "document unreadable", "pd_iec_overview pdmaxcharges"},
    {"UPDATE qor_rating SET cid = NULL, tid = NULL, mid = NULL", "rating without cable", "qor_rating cid"},
};

} // namespace

Q_DECLARE_METATYPE(const Damage*)

/// Damage made by hand, and what the tool says of it.
class CheckCommandTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsDamage_data()
    {
        QTest::addColumn<const Damage*>("damage");
        for (const Damage& damage : s_damages)
            QTest::addRow("%s: %s", damage.fault, damage.place) << &damage;
    }
    void findsDamage()
    {
        QFETCH(const Damage*, damage);
        const Sample sample;
        execute(sample.path(), damage->statements);
        const Run run = tool("check --deep --json", {sample.path()});
        QCOMPARE(run.exitCode, 3);
        QStringList found;
        for (const QJsonValue& finding : run.document()[QLatin1String("findings")].toArray())
            found.append(finding[QLatin1String("fault")].toString() + QLatin1Char(' ') +
                         finding[QLatin1String("table")].toString() + QLatin1Char(' ') +
                         finding[QLatin1String("column")].toString());
        QVERIFY2(
            found.contains(QString::fromLatin1(damage->fault) + QLatin1Char(' ') + QString::fromLatin1(damage->place)),
            run.output.constData());

        const Run repair = tool("check --repair --json", {sample.path()});
        const QString backup = repair.document()[QLatin1String("backup")].toString();
        QCOMPARE(!backup.isEmpty(), damage->isRepairable);
        if (damage->isRepairable) {
            QCOMPARE(tool("check", {backup}).exitCode, 3);
            QCOMPARE(tool("check", {sample.path()}).exitCode, 0);
        }
    }

    void findsADamagedFile()
    {
        const Sample sample;
        {
            QFile file(sample.path());
            QVERIFY(file.open(QIODevice::ReadWrite) && file.seek(file.size() / 2));
            QCOMPARE(file.write(QByteArray(20000, 'x')), 20000);
        }
        const Run run = tool("check", {sample.path()});
        QVERIFY2(run.exitCode == 3, qPrintable(run.error));
        QVERIFY(run.output.contains("file damaged"));
        QVERIFY(tool("backup", {sample.path(), sample.file("backup")}).exitCode != 0);
        QVERIFY(!QFile::exists(sample.file("backup")));
    }

    void findsNothingInASoundNetwork_data() { TestSupport::addBackends(); }
    void findsNothingInASoundNetwork()
    {
        const Sample sample;
        execute(sample.path(),
                "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 1000) INSERT INTO ce_cable "
                "SELECT replace(id, substr(id, 1, 9), '{' || printf('%08x', i)), number || '-' || i, voltage, "
                "installationdate, diagnosticstate, city, stationa, stationb, terminationa, terminationb, switchgeara, "
                "switchgearb, route, owner, type, snap, deleted, cablestate, comment, length, timestamp, importance "
                "FROM ce_cable, n");
        const TestSupport::TestDatabase database;
        QCOMPARE(tool("check --deep", {sample.path()}).exitCode, 0);
        QCOMPARE(tool("copy", {sample.path(), addressOf(database)}).exitCode, 0);
        const Run check = tool("check --deep", {addressOf(database)});
        QVERIFY2(check.exitCode == 0, check.output.constData());
        const QString report = sample.file("report.html");
        QCOMPARE(tool("report", {addressOf(database), report}).exitCode, 0);
        QCOMPARE(bytesOf(report).count("<details"), 1001);
        QVERIFY(bytesOf(report).size() < 16 << 20);
    }
};

DATAACCESS_TEST(CheckCommandTest)

#include "CheckCommandTest.moc"
