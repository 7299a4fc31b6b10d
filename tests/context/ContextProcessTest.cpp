#include "context/ContextDatabase.h"
#include "context/SampleNetwork.h"
#include "support/TestMain.h"

#include <QCryptographicHash>
#include <QProcess>
#include <QTest>

using namespace DataAccess;
using namespace TestSupport;

namespace {

void start(QProcess& process, const QString& mode, const ContextDatabase& database, int cables)
{
    process.setProcessChannelMode(QProcess::SeparateChannels);
    process.start(QStringLiteral(DATAACCESS_CONTEXT_PROCESS),
                  {mode, QString::number(database.type()), database.name(), QString::number(cables)});
}

/// The last line that the program says.
QByteArray result(const QString& mode, const ContextDatabase& database, int cables)
{
    QProcess process;
    start(process, mode, database, cables);
    if (!process.waitForFinished(120000) || process.exitCode() != 0)
        return "failed: " + process.readAllStandardError();
    return process.readAllStandardOutput().trimmed().split('\n').last();
}

} // namespace

class ContextProcessTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aLargeNetworkIsTheSameInAnotherProcess_data() { addBackends(); }
    void aLargeNetworkIsTheSameInAnotherProcess()
    {
        ContextDatabase database;
        const auto context = database.loadedCableContext();
        SampleNetwork(1000).attachTo(*context);
        context->saveChanges();
        QCOMPARE(context->Segments().size(), 20000);
        QCOMPARE(context->Points().size(), 10000);
        QCOMPARE(result(QStringLiteral("describe"), database, 0),
                 QCryptographicHash::hash(describe(*context), QCryptographicHash::Sha256).toHex());

        const QStringList before = database.cableRows();
        context->Cables().value(sampleId(QStringLiteral("cable 500")))->SetComment(QStringLiteral("changed"));
        context->saveChanges();
        QCOMPARE(changedRows(before, database.cableRows()).size(), 1);
    }

    void aKilledSaveLeavesWholeBatches_data() { addBackends(); }
    void aKilledSaveLeavesWholeBatches()
    {
        constexpr int cables = 50;
        const QHash<QString, int> whole = {{QStringLiteral("ce_owner"), 1},
                                           {QStringLiteral("ce_point"), 10 * cables},
                                           {QStringLiteral("ce_station"), 2 * cables},
                                           {QStringLiteral("ce_route"), cables},
                                           {QStringLiteral("ce_cable"), cables},
                                           {QStringLiteral("ce_phase"), 3 * cables},
                                           {QStringLiteral("ce_segment"), 20 * cables},
                                           {QStringLiteral("qor_rating"), cables}};
        ContextDatabase database;
        int cutShort = 0;
        for (unsigned long delay = 0; delay <= 240; delay += 40) {
            database.worker().run([&whole](Interfaces::IDatabase& db) {
                for (const QString& table : whole.keys())
                    db.Exec(QStringLiteral("DELETE FROM ") + table);
            });
            QProcess process;
            start(process, QStringLiteral("save"), database, cables);
            QVERIFY(process.waitForReadyRead(60000));
            QThread::msleep(delay);
            process.kill();
            QVERIFY(process.waitForFinished());
            for (auto it = whole.begin(); it != whole.end(); ++it) {
                const int rows = database.value(QStringLiteral("SELECT count(*) FROM ") + it.key()).toInt();
                QVERIFY2(rows == 0 || rows == it.value(), qPrintable(it.key()));
                cutShort += rows == 0 ? 1 : 0;
            }
            QCOMPARE(result(QStringLiteral("save"), database, cables), QByteArray("saved"));
            for (auto it = whole.begin(); it != whole.end(); ++it)
                QCOMPARE(database.value(QStringLiteral("SELECT count(*) FROM ") + it.key()).toInt(), it.value());
        }
        QVERIFY(cutShort > 0);
    }
};

DATAACCESS_TEST(ContextProcessTest)

#include "ContextProcessTest.moc"
