#include "migration/MigrationFixture.h"
#include "migration/editor/EditorMigrationManager.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QTest>

using namespace TestSupport;

/// Processes that migrate a database: at the same time, or killed, again and again, until one lives long enough.
class MigrationCrashTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void completesWhatWasKilled_data() { addBackends(); }
    void completesWhatWasKilled();
    void letsAllProgramsIn_data() { addBackends(); }
    void letsAllProgramsIn();
};

namespace {

void start(QProcess& process, const TestDatabase& database)
{
    process.start(QStringLiteral(DATAACCESS_MIGRATION_PROGRAM), {QString::number(database.type()), database.name()});
    QVERIFY(process.waitForReadyRead());
}

} // namespace

void MigrationCrashTest::completesWhatWasKilled()
{
    const LogCapture log;
    TestDatabase database;
    RunningWorker worker(database.config());
    MigrationFixture::create(worker, MigrationFixture::Editor, 1, MigrationFixture::With);
    const QString numbers =
        QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 100) "
                       "SELECT i FROM n");
    MigrationFixture::execute(
        worker, {QStringLiteral("INSERT INTO ce_cable (id, voltage, switchgeara, switchgearb) "
                                "SELECT 'many' || i, 5, 'g1', 'g1' FROM (%1) AS numbers")
                     .arg(numbers),
                 QStringLiteral(
                     "INSERT INTO ce_segment (id, insulation, length) SELECT 'many' || i, 'i1', i FROM (%1) AS numbers")
                     .arg(numbers)});
    int killed = 0;
    QRandomGenerator random(1);
    for (int limit = 8;; limit += 1 + limit / 8) {
        QProcess process;
        start(process, database);
        process.closeWriteChannel();
        if (process.waitForFinished(random.bounded(limit))) {
            QCOMPARE(process.exitStatus(), QProcess::NormalExit);
            QCOMPARE(process.exitCode(), 0);
            break;
        }
        process.kill();
        process.waitForFinished();
        ++killed;
    }
    QVERIFY(killed >= 3);

    DataAccess::Manager::EditorMigrationManager manager;
    manager.setDbWorker(worker.get());
    QCOMPARE(manager.DbVersion(), manager.ExpectedVersion());
    const QString many = QStringLiteral(" WHERE id LIKE 'many%'");
    QCOMPARE(MigrationFixture::rows(worker, QStringLiteral("SELECT count(*), sum(voltage) FROM ce_cable") + many),
             QStringLiteral("100|500000"));
    QCOMPARE(MigrationFixture::rows(worker, QStringLiteral("SELECT count(*), sum(length), min(detail), max(detail) "
                                                           "FROM ce_segment") +
                                                many),
             QStringLiteral("100|5050|{e4ceb74c-b03e-409d-8493-fd7aaa01162e}|{e4ceb74c-b03e-409d-8493-fd7aaa01162e}"));
    MigrationFixture::execute(
        worker, {QStringLiteral("DELETE FROM ce_cable") + many, QStringLiteral("DELETE FROM ce_segment") + many});
    QCOMPARE(MigrationFixture::faults(worker, MigrationFixture::Editor, 1, MigrationFixture::With), QStringList());
}

/// Set DATAACCESS_TEST_ROUNDS for more rounds than a few.
void MigrationCrashTest::letsAllProgramsIn()
{
    const LogCapture log;
    const int rounds = qEnvironmentVariableIsSet("DATAACCESS_TEST_ROUNDS")
                           ? qEnvironmentVariableIntValue("DATAACCESS_TEST_ROUNDS")
                           : 4;
    for (int round = 0; round < rounds; ++round) {
        TestDatabase database;
        RunningWorker worker(database.config());
        const int version = round % 2 == 0 ? MigrationFixture::emptyVersion : 1;
        MigrationFixture::create(worker, MigrationFixture::Editor, version, MigrationFixture::With);
        QProcess programs[4];
        for (QProcess& program : programs)
            start(program, database);
        for (QProcess& program : programs)
            program.closeWriteChannel();
        for (QProcess& program : programs) {
            QVERIFY(program.waitForFinished());
            QVERIFY2(program.exitStatus() == QProcess::NormalExit && program.exitCode() == 0,
                     program.readAllStandardError().constData());
        }
        QCOMPARE(MigrationFixture::faults(worker, MigrationFixture::Editor, version, MigrationFixture::With),
                 QStringList());
    }
}

DATAACCESS_TEST(MigrationCrashTest)

#include "MigrationCrashTest.moc"
