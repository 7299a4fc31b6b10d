#include "support/TestDatabase.h"
#include "support/TestMain.h"

#include <QFile>
#include <QProcess>
#include <QSet>
#include <QTest>

using TestSupport::TestDatabase;

namespace {

QStringList linesOf(const QString& path)
{
    QFile file(QStringLiteral(DATAACCESS_SOURCE_DIR "/") + path);
    QStringList lines;
    if (file.open(QIODevice::ReadOnly)) {
        for (const QString& line : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n')))
            lines << line.trimmed();
    }
    return lines;
}

} // namespace

class UsageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theProgramRuns()
    {
        const TestDatabase first(DataAccess::Enumerations::SQLite3);
        const TestDatabase second(DataAccess::Enumerations::SQLite3);
        QProcess process;
        process.start(QStringLiteral(DATAACCESS_USAGE), {first.name(), second.name()});
        QVERIFY(process.waitForFinished(60000));
        QCOMPARE(process.exitCode(), 0);
        QVERIFY(process.readAllStandardError().contains("\"K-1\" phase 0 420.5 m 1.6e+08 m/s"));
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
        const QStringList document = linesOf(QString::fromLatin1(QTest::currentDataTag()));
        const QStringList code = linesOf(program);
        const QSet<QString> known(code.begin(), code.end());
        bool isCode = false;
        int shown = 0;
        for (const QString& line : document) {
            if (line.startsWith(QLatin1String("```"))) {
                isCode = !isCode;
            } else if (isCode) {
                QVERIFY2(known.contains(line), qPrintable(line));
                ++shown;
            }
        }
        QVERIFY(shown > lines);
    }
};

DATAACCESS_TEST(UsageTest)

#include "UsageTest.moc"
