#include "ToolRun.h"
#include "support/TestMain.h"

#include <QFile>
#include <QJsonArray>
#include <QTest>

/// Damage made by hand, and what the tool says of it.
class CheckCommandTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsDamage_data()
    {
        QTest::addColumn<QString>("damage");
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QString>("place");
        QTest::addColumn<bool>("isRepairable");
        const auto row = [](const char* name, const char* damage, const char* fault, const char* place,
                            bool isRepairable = false) {
            QTest::newRow(name) << QString::fromLatin1(damage) << QString::fromLatin1(fault)
                                << QString::fromLatin1(place) << isRepairable;
        };
        row("table", "DROP TABLE ce_owner", "table missing", "ce_owner ");
        row("column", "ALTER TABLE pd_summary DROP COLUMN vwd", "column missing", "pd_summary vwd");
        row("column type", "ALTER TABLE ce_point DROP COLUMN latitude; ALTER TABLE ce_point ADD latitude TEXT",
            "column type", "ce_point latitude");
        row("odd column", "ALTER TABLE ce_point ADD height REAL", "column unknown", "ce_point height");
        row("key", "CREATE TABLE o AS SELECT * FROM ce_owner; DROP TABLE ce_owner; ALTER TABLE o RENAME TO ce_owner",
            "key missing", "ce_owner id");
        row("version",
            "INSERT INTO features SELECT 77, name, type, module, temp_changeable, changeable, admin FROM features WHERE "
            "name = 'PdVersion'; INSERT INTO feature_defaults VALUES (77, '8', NULL)",
            "version rows", "features ");
        row("broken copy", "CREATE TABLE dataaccess_copy (begun TEXT)", "copy unfinished", " ");
        row("no id", "UPDATE ce_owner SET id = 'x'", "id invalid", "ce_owner id");
        row("id in capitals", "UPDATE ce_point SET id = upper(id)", "id in capitals", "ce_point id", true);
        row("id twice", "INSERT INTO ce_owner SELECT upper(id), name, snap, deleted, timestamp FROM ce_owner",
            "id doubled", "ce_owner id");
        row("reference in capitals", "UPDATE ce_phase SET cable = upper(cable)", "reference in capitals",
            "ce_phase cable", true);
        row("dangling reference", "DELETE FROM ce_station", "reference dangling", "ce_cable stationa");
        row("dangling events", "UPDATE pd_mapping_event SET report_id = '{6a5e27ec-0d5c-4c5f-8e2d-0d3a3f3a3f3a}'",
            "reference dangling", "pd_mapping_event report_id");
        row("dangling point", "UPDATE ce_route SET points = points || '#{6a5e27ec-0d5c-4c5f-8e2d-0d3a3f3a3f3a}'",
            "reference dangling", "ce_route points");
        row("odd list of points", "UPDATE ce_route SET points = points || '#x'", "points invalid", "ce_route points");
        row("text in a number", "UPDATE ce_cable SET voltage = 'high'", "value does not convert", "ce_cable voltage");
        row("odd truth", "UPDATE ce_cable SET deleted = 7", "value does not convert", "ce_cable deleted", true);
        row("odd time", "UPDATE pd_task SET creationdate = 'once'", "value does not convert", "pd_task creationdate");
        row("odd date", "UPDATE ce_cable SET installationdate = '2021-02-30'", "value does not convert",
            "ce_cable installationdate");
        row("bytes in a text", "UPDATE ce_owner SET name = x'ff00'", "value does not convert", "ce_owner name");
        row("no UTF-8", "UPDATE ce_owner SET name = CAST(x'41ff' AS TEXT)", "text invalid", "ce_owner name");
        row("image", "UPDATE ce_station SET image = 'bm8gaW1hZ2U='", "image unreadable", "ce_station image");
        row("document", "UPDATE qor_rating SET evaluation = '{'", "document unreadable", "qor_rating evaluation");
        row("charges", "UPDATE pd_iec_overview SET pdmaxcharges = '{]'", "document unreadable",
            "pd_iec_overview pdmaxcharges");
        row("rating", "UPDATE qor_rating SET cid = NULL, tid = NULL, mid = NULL", "rating without cable",
            "qor_rating cid");
    }
    void findsDamage()
    {
        QFETCH(QString, damage);
        QFETCH(QString, fault);
        QFETCH(QString, place);
        QFETCH(bool, isRepairable);
        const Sample sample;
        execute(sample.path(), damage.split(QStringLiteral("; ")));
        const Run run =
            tool({QStringLiteral("check"), QStringLiteral("--deep"), QStringLiteral("--json"), sample.path()});
        QCOMPARE(run.exitCode, 3);
        bool isFound = false;
        for (const QJsonValue& finding : run.document()[QLatin1String("findings")].toArray())
            isFound = isFound || (finding[QLatin1String("fault")].toString() == fault &&
                                  finding[QLatin1String("table")].toString() + QLatin1Char(' ') +
                                          finding[QLatin1String("column")].toString() ==
                                      place);
        QVERIFY2(isFound, run.output.constData());

        const Run repair =
            tool({QStringLiteral("check"), QStringLiteral("--repair"), QStringLiteral("--json"), sample.path()});
        const QString backup = repair.document()[QLatin1String("backup")].toString();
        QCOMPARE(!backup.isEmpty(), isRepairable);
        if (isRepairable) {
            QCOMPARE(tool({QStringLiteral("check"), backup}).exitCode, 3);
            QCOMPARE(tool({QStringLiteral("check"), sample.path()}).exitCode, 0);
        }
    }

    void findsADamagedFile()
    {
        const Sample sample;
        QFile file(sample.path());
        QVERIFY(file.open(QIODevice::ReadWrite) && file.seek(file.size() / 2));
        QCOMPARE(file.write(QByteArray(20000, 'x')), 20000);
        file.close();
        const Run run = tool({QStringLiteral("check"), sample.path()});
        QVERIFY2(run.exitCode == 3, qPrintable(run.error));
        QVERIFY(run.output.contains("file damaged"));
        QVERIFY(tool({QStringLiteral("backup"), sample.path(), sample.file("backup")}).exitCode != 0);
        QVERIFY(!QFile::exists(sample.file("backup")));
    }

    void findsNothingInASoundNetwork_data() { TestSupport::addBackends(); }
    void findsNothingInASoundNetwork()
    {
        const Sample sample;
        makeThousandCables(sample.path());
        const TestSupport::TestDatabase database;
        verifySound(sample.path());
        QCOMPARE(tool({QStringLiteral("copy"), sample.path(), addressOf(database)}).exitCode, 0);
        verifySound(addressOf(database));
        const QString report = sample.file("report.html");
        QCOMPARE(tool({QStringLiteral("report"), addressOf(database), report}).exitCode, 0);
        QCOMPARE(bytesOf(report).count("<details"), 1001);
        QVERIFY(bytesOf(report).size() < 16 << 20);
    }

private:
    /// The sample's cable a thousand times more, each with phases and segments of its own.
    static void makeThousandCables(const QString& path)
    {
        const QString statement = QStringLiteral(
            "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 1000) INSERT INTO %1 "
            "SELECT replace(id, substr(id, 1, 9), '{' || printf('%08x', i)), %2 FROM %1, n");
        const QString parent = QStringLiteral("replace(%1, substr(%1, 1, 9), '{' || printf('%08x', i))");
        execute(path,
                {statement.arg(QStringLiteral("ce_segment"),
                               QStringLiteral("name, indexnumber, length, %1, point, detail, installationdate, snap, "
                                              "deleted, timestamp")
                                   .arg(parent.arg(QStringLiteral("phase")))),
                 statement.arg(QStringLiteral("ce_phase"), QStringLiteral("indexnumber, %1, snap, deleted, timestamp")
                                                               .arg(parent.arg(QStringLiteral("cable")))),
                 statement.arg(QStringLiteral("ce_cable"),
                               QStringLiteral("number || '-' || i, voltage, installationdate, diagnosticstate, city, "
                                              "stationa, stationb, terminationa, terminationb, switchgeara, "
                                              "switchgearb, route, owner, type, snap, deleted, cablestate, comment, "
                                              "length, timestamp, importance"))});
    }

    static void verifySound(const QString& address)
    {
        const Run run = tool({QStringLiteral("check"), QStringLiteral("--deep"), address});
        QVERIFY2(run.exitCode == 0, (run.output + run.error.toUtf8()).constData());
    }
};

DATAACCESS_TEST(CheckCommandTest)

#include "CheckCommandTest.moc"
