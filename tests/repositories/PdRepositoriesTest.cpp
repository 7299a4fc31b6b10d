#include "repositories/PdDatabase.h"
#include "repositories/pd/PdFileRepository.h"
#include "repositories/pd/PdReportRepository.h"
#include "repositories/pd/PlainRepositories.h"
#include "support/Entities.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"

#include <QRandomGenerator>
#include <QTest>

using namespace DataAccess;
using namespace PD::Entities;
using namespace QOR::Entities::Enumerations;
using TestSupport::LogCapture;
using TestSupport::make;
using TestSupport::PdDatabase;

namespace {

std::shared_ptr<PdReport> makeReport(const QHash<QString, QString>& filter)
{
    auto report = make<PdReport>();
    report->SetFlags(1);
    report->SetFilter(filter);
    return report;
}

std::shared_ptr<PdFile> makeFile(const QString& name, const QUuid& report = QUuid())
{
    auto file = make<PdFile>();
    file->SetName(name);
    file->SetFile("content of " + name.toUtf8());
    file->SetHash("hash");
    file->SetReportId(report);
    return file;
}

QHash<QString, QString> filterOf(const QString& key, const QString& value)
{
    return {{key, value}};
}

} // namespace

class PdRepositoriesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aReportAndItsFilterAreWrittenTogether_data() { TestSupport::addBackends(); }
    void aReportAndItsFilterAreWrittenTogether()
    {
        PdDatabase database;
        auto reports = database.repository<Repositories::PdReportRepository>();
        const QString good = QStringLiteral("good");
        const QString bad = QStringLiteral("half a value") + QChar(0); // No backend stores a NUL character.
        const auto report = makeReport({{good, good}, {bad, bad}});
        const LogCapture log;
        QVERIFY(!reports.Insert({makeReport(filterOf(good, good)), report}));
        QCOMPARE(reports.Count(), 0U);
        QCOMPARE(database.value(QStringLiteral("SELECT count(*) FROM pd_filter")).toInt(), 0);
        QCOMPARE(report->EntityState(), New);

        report->SetFilter(filterOf(good, good));
        QVERIFY(reports.Insert({report}));
        report->SetFlags(2);
        report->SetFilter(filterOf(good, bad));
        const Database::FailureWatch watch;
        QVERIFY(!reports.Update({report}));
        QCOMPARE(watch.failures().value(0).row, report->Id());
        QVERIFY(watch.reason().contains(QStringLiteral("\"value\"")));
        QCOMPARE(report->EntityState(), Modified);
        const auto stored = reports.GetById(report->Id());
        QCOMPARE(stored->Flags(), 1);
        QCOMPARE(stored->Filter(), filterOf(good, good));
        QCOMPARE(log.messages(QtWarningMsg, QStringLiteral("qor.database")).size(), 2);
    }

    void aReportIsReadAndRemovedWithItsFilterOrNotAtAll_data() { TestSupport::addBackends(); }
    void aReportIsReadAndRemovedWithItsFilterOrNotAtAll()
    {
        PdDatabase database;
        auto reports = database.repository<Repositories::PdReportRepository>();
        const auto first = makeReport(filterOf(QStringLiteral("first"), QStringLiteral("1")));
        const auto second = makeReport(filterOf(QStringLiteral("second"), QStringLiteral("2")));
        const auto third = makeReport({});
        QVERIFY(reports.Insert({first, second, third}));
        const LogCapture log;
        QVERIFY(reports.Remove({first, nullptr, std::make_shared<PdReport>(), third}));
        QCOMPARE(log.messages(QtCriticalMsg, QStringLiteral("qor.database")).size(), 2);
        QCOMPARE(reports.GetAll().keys(), QList<QUuid>{second->Id()});
        QCOMPARE(database.value(QStringLiteral("SELECT count(*) FROM pd_filter")).toInt(), 1);

        // An update of a report that was read without its filter would wipe it.
        QVERIFY(reports.Insert({first}));
        database.value(QStringLiteral("ALTER TABLE pd_filter RENAME TO elsewhere"));
        const Database::FailureWatch watch;
        QVERIFY(reports.GetAll().isEmpty());
        QVERIFY(!reports.GetById(second->Id()));
        QVERIFY(!reports.Remove({second}));
        QCOMPARE(watch.failures().size(), 3);
        database.value(QStringLiteral("ALTER TABLE elsewhere RENAME TO pd_filter"));
        QCOMPARE(reports.GetAll().value(second->Id())->Filter(), second->Filter());
    }

    void aContentThatWasNotLoadedIsNeverWiped_data() { TestSupport::addBackends(); }
    void aContentThatWasNotLoadedIsNeverWiped()
    {
        PdDatabase database;
        auto files = database.repository<Repositories::PdFileRepository>();
        const auto file = makeFile(QStringLiteral("first name"));
        const QByteArray content = file->File();
        QVERIFY(files.Insert({file, makeFile(QStringLiteral("other"))}));

        const auto bare = files.GetAll(true).value(file->Id());
        QVERIFY(bare->File().isEmpty() && bare->Hash().isEmpty());
        bare->SetName(QStringLiteral("second name"));
        bare->SetReportId(QUuid::createUuid());
        const auto stranger = std::make_shared<PdFile>();
        stranger->SetId(file->Id());
        QVERIFY(files.Update({stranger, bare, bare}));
        auto stored = files.GetById(file->Id());
        QCOMPARE(stored->Name(), QStringLiteral("second name"));
        QCOMPARE(stored->ReportId(), bare->ReportId());
        QCOMPARE(stored->File(), content);
        QCOMPARE(stored->Hash(), QByteArray("hash"));

        bare->SetHash("new hash");
        QVERIFY(files.Update({bare}));
        QVERIFY(files.Update({bare}));
        stored = files.GetAll().value(file->Id());
        QCOMPARE(stored->File(), content);
        QCOMPARE(stored->Hash(), QByteArray("new hash"));

        bare->SetFile("new content");
        bare->SetHash(QByteArray());
        QVERIFY(files.Update({bare}));
        QCOMPARE(files.GetById(file->Id())->File(), QByteArray("new content"));
        QVERIFY(files.GetById(file->Id())->Hash().isEmpty());

        stored = files.GetById(file->Id());
        stored->SetFile(QByteArray());
        QVERIFY(files.Update({stored}));
        QVERIFY(files.GetById(file->Id())->File().isEmpty());

        // What is left of the content in an object is what another database gets.
        PdDatabase other;
        auto copies = other.repository<Repositories::PdFileRepository>();
        bare->SetFile(QByteArray());
        QVERIFY(copies.Insert({bare}));
        QVERIFY(copies.GetById(file->Id())->File().isEmpty());
    }

    void filesAreFoundByTheirReports_data() { TestSupport::addBackends(); }
    void filesAreFoundByTheirReports()
    {
        PdDatabase database;
        std::unique_ptr<Database::Task<Repositories::PdFileRepository::Entities>> task;
        std::vector<QUuid> reports(50000);
        std::generate(reports.begin(), reports.end(), &QUuid::createUuid);
        const auto first = makeFile(QStringLiteral("first"), reports.front());
        const auto last = makeFile(QStringLiteral("last"), reports.back());
        const auto none = makeFile(QStringLiteral("none"), QUuid::createUuid());
        const LogCapture log;
        {
            auto files = database.repository<Repositories::PdFileRepository>();
            QVERIFY(files.Insert({first, last, none}));
            QVERIFY(files.GetByReportId(std::vector<QUuid>(), false).isEmpty());
            const QUuid one = reports.front();
            QCOMPARE(files.GetByReportId(std::vector<QUuid>{one, one}, true).keys(), QList<QUuid>{first->Id()});
            task.reset(files.GetByReportIdAsync(reports, false));
        }
        const auto found = task->Result();
        QCOMPARE(found.size(), 2);
        QCOMPARE(found.value(first->Id())->toJson(), first->toJson());
        QCOMPARE(found.value(last->Id())->toJson(), last->toJson());
        QVERIFY(!log.contains(QStringLiteral("rror")));
    }

    void theFileOfAReportIsTheNewest_data() { TestSupport::addBackends(); }
    void theFileOfAReportIsTheNewest()
    {
        PdDatabase database;
        auto files = database.repository<Repositories::PdFileRepository>();
        const QUuid report = QUuid::createUuid();
        std::vector<std::shared_ptr<PdFile>> stored;
        for (const char* name : {"deleted", "new b", "new a", "old"})
            stored.push_back(makeFile(QString::fromLatin1(name), report));
        QVERIFY(!files.GetByReportId(report, false));
        QVERIFY(files.Insert(stored));
        QTest::qSleep(5);
        QVERIFY(files.Update({stored[1], stored[2]}));
        QTest::qSleep(5);
        QVERIFY(files.Delete({stored[0]}));

        const auto newest = files.GetByReportId(report, false);
        QCOMPARE(newest->Name(), QStringLiteral("new a"));
        QCOMPARE(newest->File(), stored[2]->File());
        const auto bare = files.GetByReportId(report, true);
        QCOMPARE(bare->Id(), newest->Id());
        QVERIFY(bare->File().isEmpty() && bare->Hash().isEmpty());
        QVERIFY(files.Remove({stored[1], stored[2], stored[3]}));
        QCOMPARE(files.GetByReportId(report, false)->EntityState(), Deleted);
    }

    void aLargeFile_data() { TestSupport::addBackends(); }
    void aLargeFile()
    {
        PdDatabase database;
        auto files = database.repository<Repositories::PdFileRepository>();
        const auto file = make<PdFile>();
        QByteArray content(100 * 1024 * 1024, Qt::Uninitialized);
        QRandomGenerator(1).generate(content.begin(), content.end());
        file->SetFile(content);
        QVERIFY(files.Insert({file}));
        const auto bare = files.GetAll(true).value(file->Id());
        bare->SetName(QStringLiteral("renamed"));
        QVERIFY(files.Update({bare}));
        const auto stored = files.GetById(file->Id());
        QCOMPARE(stored->Name(), QStringLiteral("renamed"));
        QVERIFY(stored->File() == content);
    }

    void aCalibrationDateInAnotherForm_data()
    {
        QTest::addColumn<int>("backend");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QTime>("time");
        for (const auto backend : {Enumerations::SQLite3, Enumerations::Postgres}) {
            QTest::addRow("date %d", backend) << int(backend) << QStringLiteral("2021-05-03") << QTime(0, 0);
            QTest::addRow("ISO %d", backend) << int(backend) << QStringLiteral("2021-05-03T06:07:08") << QTime(6, 7, 8);
            QTest::addRow("blank %d", backend)
                << int(backend) << QStringLiteral("2021-05-03 06:07:08.009") << QTime(6, 7, 8, 9);
        }
    }
    void aCalibrationDateInAnotherForm()
    {
        QFETCH(QString, text);
        QFETCH(QTime, time);
        PdDatabase database;
        auto infos = database.repository<Repositories::PdTaskInfoRepository>();
        const auto info = make<PdTaskInfo>();
        QVERIFY(infos.Insert({info}));
        QVERIFY(!infos.GetById(info->Id())->calibrationDate().isValid());
        database.value(QStringLiteral("UPDATE pd_task_info SET calibration_date = '%1'").arg(text));
        QCOMPARE(infos.GetById(info->Id())->calibrationDate(), QDateTime(QDate(2021, 5, 3), time));
    }
};

DATAACCESS_TEST(PdRepositoriesTest)

#include "PdRepositoriesTest.moc"
