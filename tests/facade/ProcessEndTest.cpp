#include "facade/FacadeFixture.h"
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
        QTest::addColumn<QByteArray>("how");
        QTest::addColumn<int>("backend");
        for (const QByteArray how : {"returns", "outlives", "exits", "thread", "job", "removes", "early", "late"}) {
            QTest::newRow(how + ", SQLite") << how << int(DataAccess::Enumerations::SQLite3);
            QTest::newRow(how + ", PostgreSQL") << how << int(DataAccess::Enumerations::Postgres);
        }
    }
    void aProcessMayEndWithDatabasesOpen()
    {
        QFETCH(QByteArray, how);
        const TestDatabase database;
        QProcess process;
        process.start(QStringLiteral(DATAACCESS_FACADE_PROCESS),
                      {QString::fromLatin1(how), QString::number(database.type()), database.name()});
        QVERIFY2(process.waitForFinished(60000), "does not end");
        const QByteArray said = process.readAllStandardError();
        QVERIFY2(process.exitStatus() == QProcess::NormalExit, said.constData());
        QVERIFY2(process.exitCode() == 0, said.constData());
        if (how == "early" || how == "late")
            return;
        QCOMPARE(execute(database, "SELECT count(*) FROM ce_owner").toInt(), 10);
    }
};

DATAACCESS_TEST(ProcessEndTest)

#include "ProcessEndTest.moc"
