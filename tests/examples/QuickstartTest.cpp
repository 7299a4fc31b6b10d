#include "support/RunningWorker.h"
#include "support/TestDatabase.h"
#include "support/TestMain.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace DataAccess;
using TestSupport::TestDatabase;

namespace {

struct Run
{
    int exitCode;
    QString output;
    QString error;
};

Run quickstart(const QString& file)
{
    QProcess process;
    process.start(QStringLiteral(DATAACCESS_QUICKSTART), {file});
    if (!process.waitForFinished(60000))
        return {-1, {}, process.errorString()};
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

QByteArray bytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void execute(const TestDatabase& database, const QString& statement)
{
    TestSupport::RunningWorker worker(database.config());
    worker.run([&](Interfaces::IDatabase& db) { db.Exec(statement); });
}

} // namespace

class QuickstartTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsTheSameEachTime()
    {
        const TestDatabase database(Enumerations::SQLite3);
        const Run first = quickstart(database.name());
        QCOMPARE(first.error, QString());
        QCOMPARE(first.exitCode, 0);
        for (const char* part :
             {"Schema of CablesVersion: 1.3.9", "Cable K-17: 20.0 kV, 1280.0 m", "image 160 x 120 px",
              "HeatShrink joint", "12 events", "250 pC", "which now has 1 cable, 7 segments"})
            QVERIFY2(first.output.contains(QLatin1String(part)), part);
        QCOMPARE(quickstart(database.name()).output, first.output);

        // A run that was cut short is completed; a file of an older version is brought up to date, and nothing added.
        execute(database, QStringLiteral("DELETE FROM ce_cable"));
        execute(database, QStringLiteral("DELETE FROM ce_segment"));
        QCOMPARE(quickstart(database.name()).output, first.output);
        execute(database, QStringLiteral("UPDATE feature_defaults SET value = value - 1"));
        QCOMPARE(quickstart(database.name()).output, first.output);
    }

    void showsALegacyFileAndLeavesItAsItIs()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("cables.db"));
        QVERIFY(QFile::copy(QStringLiteral(DATAACCESS_SOURCE_DIR "/tests/sqlite2/fixtures/cables.db"), path));
        const QByteArray before = bytesOf(path);
        const Run run = quickstart(path);
        QCOMPARE(run.error, QString());
        QCOMPARE(run.exitCode, 0);
        QVERIFY(run.output.contains(path + QStringLiteral(".sqlite3")));
        QVERIFY(run.output.contains(QStringLiteral("\nCable ")));
        QCOMPARE(bytesOf(path), before);
    }

    void tellsWhatIsWrongInOneLine_data()
    {
        QTest::addColumn<QString>("content");
        QTest::addColumn<QString>("reason");
        QTest::newRow("text") << QStringLiteral("some text") << QStringLiteral("no database");
        QTest::newRow("newer") << QString() << QStringLiteral("Database newer than this: ");
    }
    void tellsWhatIsWrongInOneLine()
    {
        QFETCH(QString, content);
        QFETCH(QString, reason);
        const TestDatabase database(Enumerations::SQLite3);
        if (content.isEmpty()) {
            QCOMPARE(quickstart(database.name()).exitCode, 0);
            execute(database, QStringLiteral("UPDATE feature_defaults SET value = '10'"));
        } else {
            QFile file(database.name());
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content.toUtf8()) > 0);
        }
        const Run run = quickstart(database.name());
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(run.output, QString());
        QCOMPARE(run.error.count(QLatin1Char('\n')), 1);
        QVERIFY2(run.error.contains(reason), qPrintable(run.error));
    }
};

DATAACCESS_TEST(QuickstartTest)

#include "QuickstartTest.moc"
