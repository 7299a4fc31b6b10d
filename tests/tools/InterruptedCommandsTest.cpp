#include "ToolRun.h"
#include "support/TestMain.h"

#include <QFile>
#include <QTest>

#include <csignal>

using TestSupport::TestDatabase;

/// Runs that are killed, told to end, or find no room.
class InterruptedCommandsTest : public QObject
{
    Q_OBJECT

private:
    /// The sample with so many events that copying takes a while.
    static void fill(const Sample& sample)
    {
        execute(sample.path(),
                "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 40000) INSERT INTO "
                "pd_mapping_event SELECT '{' || printf('%08x', i * 7919) || '-0000-4000-8000-000000000000}', r.id, "
                "i * 1e-12, i % 3, 0, i % 2, 12000.5, i / 7.0, 0, 0, 0, '2021-05-06 07:08:09.123' "
                "FROM n, (SELECT id FROM pd_report LIMIT 1) AS r");
    }

private Q_SLOTS:
    void aKilledCopyIsCompleted_data() { TestSupport::addBackends(); }
    void aKilledCopyIsCompleted()
    {
        const Sample sample;
        fill(sample);
        const TestDatabase database;
        const QStringList ends{sample.path(), addressOf(database)};
        int kills = 0;
        // Later each time, until it is through.
        for (int patience = 150; kills < 40; patience += 250) {
            const auto process = startTool(kills == 0 ? "copy" : "copy --resume", ends);
            if (process->waitForFinished(patience) || process->state() == QProcess::NotRunning) {
                QVERIFY2(process->exitCode() == 0, process->readAllStandardError().constData());
                break;
            }
            ++kills;
            process->kill();
            process->waitForFinished(-1);
        }
        QVERIFY(kills > 0);
        QCOMPARE(tool("copy --resume", ends).exitCode, 0);
        QCOMPARE(dumpOf(addressOf(database)), dumpOf(sample.path()));
        QCOMPARE(tool("check", {addressOf(database)}).exitCode, 0);
    }

    void aCopyToldToEndSaysHowToGoOn()
    {
        const Sample sample;
        fill(sample);
        const QStringList ends{sample.path(), sample.file("copy.vbk")};
        const auto process = startTool("copy", ends);
        QTRY_VERIFY(QFile::exists(sample.file("copy.vbk.part")));
        ::kill(static_cast<pid_t>(process->processId()), SIGINT);
        QVERIFY(process->waitForFinished(60000));
        QCOMPARE(process->exitCode(), 1);
        QVERIFY(process->readAllStandardError().contains("--resume"));
        QVERIFY(!QFile::exists(sample.file("copy.vbk")));
        QCOMPARE(tool("copy --resume", ends).exitCode, 0);
        QCOMPARE(dumpOf(sample.file("copy.vbk")), dumpOf(sample.path()));
        QVERIFY(!QFile::exists(sample.file("copy.vbk.part")));
    }

    void killedBackupsAndRestoresLeaveAllOrNothing()
    {
        const Sample sample;
        fill(sample);
        const QByteArray whole = dumpOf(sample.path());
        const QString backup = sample.file("backup");
        const QString restored = sample.file("restored");
        QVERIFY(QFile::copy(Sample().path(), restored));
        const QByteArray before = dumpOf(restored);
        for (int patience = 5; patience < 200; patience += 60) {
            for (const bool isBackup : {true, false}) {
                const auto process = startTool(isBackup ? "backup --force" : "restore --force",
                                               {sample.path(), isBackup ? backup : restored});
                process->waitForFinished(patience);
                process->kill();
                process->waitForFinished(-1);
            }
            if (QFile::exists(backup))
                QCOMPARE(dumpOf(backup), whole);
            const QByteArray now = dumpOf(restored);
            QVERIFY(now == before || now == whole);
        }
        QCOMPARE(tool("backup --force", {sample.path(), backup}).exitCode, 0);
        QVERIFY(!QFile::exists(backup + QStringLiteral(".part")));
    }

    void aFullDiskLeavesNothing()
    {
        for (const char* command : {"backup", "copy", "report", "restore", "dump -o"}) {
            const Sample sample;
            const QStringList before = sample.files();
            QStringList arguments{sample.path()};
            arguments.insert(qstrcmp(command, "dump -o") == 0 ? 0 : 1, sample.file("new"));
            const Run run = toolOnFullDisk(command, arguments, 4);
            QVERIFY2(run.exitCode == 1, qPrintable(run.error));
            QStringList left = sample.files();
            left.removeAll(QStringLiteral("new.part")); // what a copy can be gone on with
            QCOMPARE(left, before);
        }
    }
};

DATAACCESS_TEST(InterruptedCommandsTest)

#include "InterruptedCommandsTest.moc"
