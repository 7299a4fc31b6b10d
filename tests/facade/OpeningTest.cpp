#include "database/DbWorker.h"
#include "facade/FacadeFixture.h"
#include "support/FileLocker.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"

#include <QFile>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTest>

using namespace DataAccess;
using namespace TestSupport;

namespace {

const QString s_fixtures = QStringLiteral(DATAACCESS_SOURCE_DIR "/tests/sqlite2/fixtures/");

bool makeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace

/// What is opened, and what is not, and how the application learns why.
class OpeningTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void refusals_data()
    {
        QTest::addColumn<QString>("reason");
        QTest::addColumn<int>("tries");
        // Only a server may be starting up, and is asked again; nothing is once all the waiting was in vain.
        QTest::newRow("no database") << "The database cannot be opened: The file is no database" << 1;
        QTest::newRow("locked file") << "locked" << 1;
        QTest::newRow("wrong password") << "password authentication failed" << 10;
        QTest::newRow("incomplete") << "the configuration does not name a database completely" << 0;
        QTest::newRow("name in use") << "The connection name is in use for another database" << 0;
    }
    void refusals()
    {
        QFETCH(QString, reason);
        QFETCH(int, tries);
        const QByteArray kind = QTest::currentDataTag();
        const TestDatabase database(kind == "wrong password" ? Enumerations::Postgres : Enumerations::SQLite3);
        const auto config = database.config();
        const auto facade = DataAccessFacade::Instance();
        std::unique_ptr<Database::DbWorker> other;
        std::unique_ptr<FileLocker> locker;
        QThread thread;
        if (kind == "locked file") {
            QVERIFY(makeFile(database.name(), {}));
            locker = std::make_unique<FileLocker>(database.name());
        } else if (kind == "wrong password") {
            config->SetPassword(QStringLiteral("secret"));
        } else if (kind == "incomplete") {
            config->SetDatabaseName(QString());
        } else if (kind == "name in use") {
            const auto sameName = database.config(config->ConnectionName());
            sameName->SetDatabaseName(database.name() + QStringLiteral(".other"));
            other = Database::DbWorker::make_worker(&thread, sameName);
        } else {
            QVERIFY(makeFile(database.name(), "none"));
        }
        const QSignalSpy unknown(facade.get(), &DataAccessFacade::unknownDB);
        const LogCapture log;
        QVERIFY(!facade->AddDatabase(config));
        const QString error = facade->LastError(config);
        QVERIFY2(error.contains(reason), qUtf8Printable(error));
        QVERIFY(!error.contains(QStringLiteral("secret")) && !error.contains(QLatin1Char('\n')));
        QVERIFY(facade->LastError(database.config()).isEmpty());
        QCOMPARE(unknown.count(), 2);
        const QStringList lines = log.messages(QtCriticalMsg, QStringLiteral("qor.database"));
        QCOMPARE(lines.filter(QStringLiteral("Can't open connection")).size(), tries);
    }

    void schemasThatCannotBeUsed_data()
    {
        QTest::addColumn<int>("backend");
        QTest::addColumn<QStringList>("damage");
        QTest::addColumn<QStringList>("repair");
        QTest::addColumn<bool>("isUnknown");
        QTest::addColumn<QString>("reason");
        const QString rename = QStringLiteral("ALTER TABLE feature_defaults RENAME COLUMN %1 TO %2");
        const QString store = QStringLiteral("UPDATE feature_defaults SET value = %1 WHERE featureid = "
                                             "(SELECT id FROM features WHERE name = 'CablesVersion')");
        const QString version = QStringLiteral("value");
        const QString lost = QStringLiteral("lost");
        for (const int backend : {int(Enumerations::SQLite3), int(Enumerations::Postgres)}) {
            QTest::addRow("unreadable version, %d", backend)
                << backend << QStringList(rename.arg(version, lost)) << QStringList(rename.arg(lost, version)) << true
                << QStringLiteral("^The schema version CablesVersion cannot be read: .*value");
            QTest::addRow("step that fails, %d", backend)
                << backend
                << QStringList(
                       {store.arg(QStringLiteral("'3'")), QStringLiteral("ALTER TABLE ce_segment RENAME TO lost")})
                << QStringList(QStringLiteral("ALTER TABLE lost RENAME TO ce_segment")) << false
                << QStringLiteral("^The schema CablesVersion cannot be brought up to date: .*ce_segment");
        }
    }
    /// Nothing is left of the attempt, and once the fault is mended, the same configuration opens.
    void schemasThatCannotBeUsed()
    {
        QFETCH(QStringList, damage);
        QFETCH(QStringList, repair);
        QFETCH(bool, isUnknown);
        QFETCH(QString, reason);
        const int threads = threadCount();
        const TestDatabase database;
        const auto facade = DataAccessFacade::Instance();
        const auto config = database.config();
        QVERIFY(facade->AddDatabase(config));
        facade->RemoveDatabase(config);
        execute(database, damage);
        const QSignalSpy unknown(facade.get(), &DataAccessFacade::unknownDB);
        const LogCapture log;
        QVERIFY(!facade->AddDatabase(config));
        QVERIFY(!facade->GetRepositories(config));
        QVERIFY2(facade->LastError(config).contains(QRegularExpression(reason)),
                 qUtf8Printable(facade->LastError(config)));
        QTRY_VERIFY(threadCount() <= threads);
        QCOMPARE(unknown.isEmpty(), !isUnknown);
        for (const QVariantList& arguments : unknown)
            QCOMPARE(arguments.first().toString(),
                     QStringLiteral("Error reading database: cannot determine database version."));
        QCOMPARE(log.messages(QtWarningMsg, QStringLiteral("qor.facade")),
                 QStringList(QStringLiteral("QOR did not initialized")));

        execute(database, repair);
        QVERIFY(facade->AddDatabase(config));
        QVERIFY(facade->LastError(config).isEmpty());
        facade->RemoveDatabase(config);
    }

    void filesOfAllNames_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes");
        QFile empty(s_fixtures + QStringLiteral("empty.db"));
        QVERIFY(empty.open(QIODevice::ReadOnly));
        const QByteArray none = empty.readAll();
        QByteArray dropped = none + QByteArray(1024, 0);
        dropped[52] = 3; // the first free page, and how many there are
        dropped[56] = 1;
        for (const char* const name : {"file:y?mode=memory", "y?mode=memory&cache=shared#z%20.vbk", ":y.vbk"}) {
            QTest::addRow("%s", name) << int(Enumerations::SQLite3) << name << QByteArray();
            QTest::addRow("%s, SQLite 2", name) << int(Enumerations::SQLite2) << name << QByteArray();
        }
        QTest::newRow("no tables") << int(Enumerations::SQLite2) << "legacy" << none;
        QTest::newRow("no tables any more") << int(Enumerations::SQLite2) << "legacy" << dropped;
    }
    /// A name is that of a file, also if SQLite or Qt could read something else from it. Files without tables are
    /// databases.
    void filesOfAllNames()
    {
        QFETCH(int, type);
        QFETCH(QString, name);
        QFETCH(QByteArray, bytes);
        const QTemporaryDir folder;
        const auto goBack = qScopeGuard([before = QDir::currentPath()] { QDir::setCurrent(before); });
        QVERIFY(QDir::setCurrent(folder.path()));
        QFile file(folder.path() + QLatin1Char('/') + name);
        QVERIFY(makeFile(file.fileName(), bytes));
        auto config = std::make_shared<Database::DatabaseConfig>();
        config->SetConnectionName(QStringLiteral("relative"));
        config->SetDatabaseName(name);
        config->SetType(static_cast<Enumerations::DatabaseType>(type));
        const auto facade = DataAccessFacade::Instance();
        for (unsigned int round = 0; round < 2; ++round) {
            const auto manager = facade->AddDatabase(config);
            QVERIFY2(manager, qUtf8Printable(facade->LastError(config)));
            const auto owners = manager->EditorRepositories()->OwnerRepository();
            QVERIFY(owners->Insert({makeOwner()}));
            QCOMPARE(owners->Count(), round + 1);
            facade->RemoveDatabase(config);
        }
        const bool isLegacy = type == Enumerations::SQLite2;
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files),
                 isLegacy ? QStringList({name, name + QStringLiteral(".sqlite3")}) : QStringList(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll() == bytes, isLegacy);
    }
};

DATAACCESS_TEST(OpeningTest)

#include "OpeningTest.moc"
