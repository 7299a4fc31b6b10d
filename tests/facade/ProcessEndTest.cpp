#include "support/RunningWorker.h"
#include "support/Scalar.h"
#include "support/TestDatabase.h"
#include "support/TestMain.h"

#include <QProcess>
#include <QTest>

using namespace TestSupport;

class ProcessEndTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aProcessMayEndWithDatabasesOpen_data()
    {
        QTest::addColumn<QString>("how");
        QTest::addColumn<int>("backend");
        for (const char* how : {"returns", "outlives", "exits", "thread", "job", "removes", "early", "late"}) {
            QTest::addRow("%s, SQLite", how) << QString::fromLatin1(how) << int(DataAccess::Enumerations::SQLite3);
            QTest::addRow("%s, PostgreSQL", how) << QString::fromLatin1(how) << int(DataAccess::Enumerations::Postgres);
        }
    }
    void aProcessMayEndWithDatabasesOpen()
    {
        QFETCH(QString, how);
        const TestDatabase database;
        QProcess process;
        process.start(QStringLiteral(DATAACCESS_FACADE_PROCESS),
                      {how, QString::number(database.type()), database.name()});
        QVERIFY2(process.waitForFinished(60000), "does not end");
        const QByteArray said = process.readAllStandardError();
        QVERIFY2(process.exitStatus() == QProcess::NormalExit, said.constData());
        QVERIFY2(process.exitCode() == 0, said.constData());
        if (how == QLatin1String("early") || how == QLatin1String("late"))
            return;
        RunningWorker worker(database.config());
        const int owners = worker.run(
            [](DataAccess::Interfaces::IDatabase& db) { return scalar(db, "SELECT count(*) FROM ce_owner").toInt(); });
        QCOMPARE(owners, 10);
    }
};

DATAACCESS_TEST(ProcessEndTest)

#include "ProcessEndTest.moc"
