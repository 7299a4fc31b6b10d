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

    void theDocumentShowsItsCode()
    {
        const QStringList document = linesOf(QStringLiteral("docs/using.md"));
        const QStringList code = linesOf(QStringLiteral("examples/usage/main.cpp"));
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
        QVERIFY(shown > 40);
    }
};

DATAACCESS_TEST(UsageTest)

#include "UsageTest.moc"
