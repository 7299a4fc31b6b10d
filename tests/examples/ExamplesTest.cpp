#include "sqlite2/Fixtures.h"
#include "support/RunningWorker.h"
#include "support/TestDatabase.h"
#include "support/TestMain.h"

#include <QFile>
#include <QProcess>
#include <QTest>

using namespace DataAccess;
using namespace TestSupport;

namespace {

struct Run
{
    int exitCode;
    QString output;
    QString error;
};

Run run(const char* program, const QStringList& arguments)
{
    QProcess process;
    process.start(QString::fromLatin1(program), arguments);
    if (!process.waitForFinished(60000))
        return {-1, {}, process.errorString()};
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

Run quickstart(const QString& file)
{
    return run(DATAACCESS_QUICKSTART, {file});
}

void execute(const TestDatabase& database, const char* statements)
{
    RunningWorker(database.config()).run([&](Interfaces::IDatabase& db) {
        for (const QString& statement : QString::fromLatin1(statements).split(QLatin1Char(';')))
            db.Exec(statement);
    });
}

QStringList linesOf(const QString& path)
{
    QStringList lines;
    for (const QByteArray& line : fileBytes(QStringLiteral(DATAACCESS_SOURCE_DIR "/") + path).split('\n'))
        lines << QString::fromUtf8(line).trimmed();
    return lines;
}

} // namespace

class ExamplesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void quickstartShowsTheSameEachTime()
    {
        const TestDatabase database(Enumerations::SQLite3);
        const Run first = quickstart(database.name());
        QCOMPARE(first.error, QString());
        QCOMPARE(first.exitCode, 0);
        for (const char* part : {"Schema of CablesVersion: 1.3.", "Cable K-17: 20.0 kV, 1280.0 m", "image 160 x 120 px",
                                 "HeatShrink joint", "12 events", "250 pC", "which now has 1 cable, 7 segments"})
            QVERIFY2(first.output.contains(QLatin1String(part)), part);

        // A run that was cut short is completed; a file of an older version is brought up to date, and nothing added.
        for (const char* change : {"SELECT 1", "DELETE FROM ce_cable;DELETE FROM ce_segment",
                                   "UPDATE feature_defaults SET value = value - 1"}) {
            execute(database, change);
            QCOMPARE(quickstart(database.name()).output, first.output);
        }
    }

    void quickstartLeavesALegacyFileAsItIs()
    {
        const LegacyCopy legacy(QStringLiteral("cables.db"));
        const Run shown = quickstart(legacy.path());
        QCOMPARE(shown.error, QString());
        QCOMPARE(shown.exitCode, 0);
        QVERIFY(shown.output.contains(legacy.workingCopy()));
        QVERIFY(shown.output.contains(QStringLiteral("\nCable ")));
        QVERIFY(legacy.isUnchanged());
    }

    void quickstartTellsWhatIsWrongInOneLine()
    {
        const TestDatabase text(Enumerations::SQLite3);
        QFile file(text.name());
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("some text") > 0);
        file.close();
        const TestDatabase newer(Enumerations::SQLite3);
        QCOMPARE(quickstart(newer.name()).exitCode, 0);
        execute(newer, "UPDATE feature_defaults SET value = '1000'");
        const QVector<QPair<QString, QString>> cases{{text.name(), QStringLiteral("no database")},
                                                     {newer.name(), QStringLiteral("Database newer than this: ")}};
        for (const auto& refused : cases) {
            const Run told = quickstart(refused.first);
            QCOMPARE(told.exitCode, 1);
            QCOMPARE(told.output, QString());
            QCOMPARE(told.error.count(QLatin1Char('\n')), 1);
            QVERIFY2(told.error.contains(refused.second), qPrintable(told.error));
        }
    }

    void usageRuns()
    {
        const TestDatabase first(Enumerations::SQLite3);
        const TestDatabase second(Enumerations::SQLite3);
        const Run usage = run(DATAACCESS_USAGE, {first.name(), second.name()});
        QCOMPARE(usage.exitCode, 0);
        QVERIFY(usage.error.contains(QStringLiteral("\"K-1\" phase 0 420.5 m 1.6e+08 m/s")));
    }

    void documentsShowCodeThatIsCompiled_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<int>("lines");
        QTest::newRow("docs/using.md") << QStringLiteral("examples/usage/main.cpp") << 40;
        QTest::newRow("README.md") << QStringLiteral("examples/minimal/main.cpp") << 25;
    }
    void documentsShowCodeThatIsCompiled()
    {
        QFETCH(QString, program);
        QFETCH(int, lines);
        const QStringList code = linesOf(program);
        bool isCode = false;
        int shown = 0;
        for (const QString& line : linesOf(QString::fromLatin1(QTest::currentDataTag()))) {
            if (line.startsWith(QLatin1String("```"))) {
                isCode = !isCode;
            } else if (isCode) {
                QVERIFY2(code.contains(line), qPrintable(line));
                ++shown;
            }
        }
        QVERIFY(shown > lines);
    }
};

DATAACCESS_TEST(ExamplesTest)

#include "ExamplesTest.moc"
