#include "migration/MigrationDatabase.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QTest>

using namespace TestSupport;

namespace {

void start(QProcess& process, const TestDatabase& database)
{
    process.start(QStringLiteral(DATAACCESS_MIGRATION_PROGRAM), {QString::number(database.type()), database.name()});
    QVERIFY(process.waitForReadyRead());
}

} // namespace

/// Processes that migrate a database: at the same time, or killed, again and again, until one lives long enough.
class MigrationCrashTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void completesWhatWasKilled_data() { addBackends(); }
    void completesWhatWasKilled()
    {
        const LogCapture log;
        MigrationDatabase db(MigrationDatabase::Editor, 1, MigrationDatabase::With);
        const QString numbers =
            QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 100) "
                           "SELECT i FROM n");
        db.execute(
            {QStringLiteral("INSERT INTO ce_cable (id, voltage, switchgeara, switchgearb) "
                            "SELECT 'many' || i, 5, 'g1', 'g1' FROM (%1) AS numbers")
                 .arg(numbers),
             QStringLiteral(
                 "INSERT INTO ce_segment (id, insulation, length) SELECT 'many' || i, 'i1', i FROM (%1) AS numbers")
                 .arg(numbers)});
        int killed = 0;
        QRandomGenerator random(1);
        for (int limit = 8;; limit += 1 + limit / 8) {
            QProcess process;
            start(process, db.database());
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

        QCOMPARE(db.manager().DbVersion(), db.manager().ExpectedVersion());
        const QString many = QStringLiteral(" WHERE id LIKE 'many%'");
        QCOMPARE(db.rows(QStringLiteral("SELECT count(*), sum(voltage) FROM ce_cable") + many),
                 QStringLiteral("100|500000"));
        QCOMPARE(
            db.rows(QStringLiteral("SELECT count(*), sum(length), min(detail), max(detail) FROM ce_segment") + many),
            QStringLiteral("100|5050|{e4ceb74c-b03e-409d-8493-fd7aaa01162e}|{e4ceb74c-b03e-409d-8493-fd7aaa01162e}"));
        db.execute({QStringLiteral("DELETE FROM ce_cable") + many, QStringLiteral("DELETE FROM ce_segment") + many});
        QCOMPARE(db.faults(), QStringList());
    }

    void letsAllProgramsIn_data() { addBackends(); }
    /// Set DATAACCESS_TEST_ROUNDS for more rounds than a few.
    void letsAllProgramsIn()
    {
        const LogCapture log;
        const int rounds = qEnvironmentVariableIsSet("DATAACCESS_TEST_ROUNDS")
                               ? qEnvironmentVariableIntValue("DATAACCESS_TEST_ROUNDS")
                               : 4;
        for (int round = 0; round < rounds; ++round) {
            const int version = round % 2 == 0 ? MigrationDatabase::emptyVersion : 1;
            MigrationDatabase db(MigrationDatabase::Editor, version, MigrationDatabase::With);
            QProcess programs[4];
            for (QProcess& program : programs)
                start(program, db.database());
            for (QProcess& program : programs)
                program.closeWriteChannel();
            for (QProcess& program : programs) {
                QVERIFY(program.waitForFinished());
                QVERIFY2(program.exitStatus() == QProcess::NormalExit && program.exitCode() == 0,
                         program.readAllStandardError().constData());
            }
            QCOMPARE(db.faults(), QStringList());
        }
    }
};

DATAACCESS_TEST(MigrationCrashTest)

#include "MigrationCrashTest.moc"
