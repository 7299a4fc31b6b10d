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
                {QStringLiteral(
                    "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 40000) INSERT INTO "
                    "pd_mapping_event SELECT '{' || printf('%08x', i * 7919) || '-0000-4000-8000-000000000000}', "
                    "r.id, i * 1e-12, i % 3, 0, i % 2, 12000.5, i / 7.0, 0, 0, 0, '2021-05-06 07:08:09.123' "
                    "FROM n, (SELECT id FROM pd_report LIMIT 1) AS r")});
    }

private Q_SLOTS:
    void aKilledCopyIsCompleted_data() { TestSupport::addBackends(); }
    void aKilledCopyIsCompleted()
    {
        const Sample sample;
        fill(sample);
        const TestDatabase database;
        const QStringList copy{QStringLiteral("copy"), sample.path(), addressOf(database)};
        const QStringList resume = copy + QStringList(QStringLiteral("--resume"));
        int kills = 0;
        // Later each time, until it is through.
        for (int patience = 150; kills < 40; patience += 250) {
            const auto process = startTool(kills == 0 ? copy : resume);
            if (process->waitForFinished(patience) || process->state() == QProcess::NotRunning) {
                QVERIFY2(process->exitCode() == 0, process->readAllStandardError().constData());
                break;
            }
            ++kills;
            process->kill();
            process->waitForFinished(-1);
        }
        QVERIFY(kills > 0);
        QCOMPARE(tool(resume).exitCode, 0);
        QCOMPARE(dumpOf(addressOf(database)), dumpOf(sample.path()));
        QCOMPARE(tool({QStringLiteral("check"), addressOf(database)}).exitCode, 0);
    }

    void aCopyToldToEndSaysHowToGoOn()
    {
        const Sample sample;
        fill(sample);
        const auto process = startTool({QStringLiteral("copy"), sample.path(), sample.file("copy.vbk")});
        QTRY_VERIFY(QFile::exists(sample.file("copy.vbk.part")));
        ::kill(static_cast<pid_t>(process->processId()), SIGINT);
        QVERIFY(process->waitForFinished(60000));
        QCOMPARE(process->exitCode(), 1);
        QVERIFY(process->readAllStandardError().contains("--resume"));
        QVERIFY(!QFile::exists(sample.file("copy.vbk")));
        QCOMPARE(
            tool({QStringLiteral("copy"), QStringLiteral("--resume"), sample.path(), sample.file("copy.vbk")}).exitCode,
            0);
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
            for (const QStringList& command : {QStringList{QStringLiteral("backup"), sample.path(), backup},
                                               QStringList{QStringLiteral("restore"), sample.path(), restored}}) {
                const auto process = startTool(command + QStringList(QStringLiteral("--force")));
                process->waitForFinished(patience);
                process->kill();
                process->waitForFinished(-1);
            }
            if (QFile::exists(backup))
                QCOMPARE(dumpOf(backup), whole);
            const QByteArray now = dumpOf(restored);
            QVERIFY(now == before || now == whole);
        }
        QCOMPARE(tool({QStringLiteral("backup"), QStringLiteral("--force"), sample.path(), backup}).exitCode, 0);
        QVERIFY(!QFile::exists(backup + QStringLiteral(".part")));
    }

    void aFullDiskLeavesNothing_data()
    {
        QTest::addColumn<QString>("command");
        for (const char* command : {"backup", "copy", "dump -o", "report", "restore"})
            QTest::newRow(command) << QString::fromLatin1(command);
    }
    void aFullDiskLeavesNothing()
    {
        QFETCH(QString, command);
        const Sample sample;
        const QStringList before = sample.files();
        QStringList arguments = command.split(QLatin1Char(' '));
        const bool isDump = arguments.size() > 1;
        arguments +=
            isDump ? QStringList{sample.file("new"), sample.path()} : QStringList{sample.path(), sample.file("new")};
        const Run run = toolOnFullDisk(arguments, 4);
        QVERIFY2(run.exitCode == 1, qPrintable(run.error));
        QStringList left = sample.files();
        left.removeAll(QStringLiteral("new.part")); // what a copy can be gone on with
        QCOMPARE(left, before);
    }
};

DATAACCESS_TEST(InterruptedCommandsTest)

#include "InterruptedCommandsTest.moc"
