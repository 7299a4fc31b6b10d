#include "database/Failure.h"
#include "migration/MigrationDatabase.h"
#include "migration/editor/EditorMigrationManager.h"
#include "support/FileLocker.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"

#include <QElapsedTimer>
#include <QFile>

#include <functional>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

using namespace DataAccess;
using namespace TestSupport;
using Manager::EditorMigrationManager;

namespace {

quint32 currentVersion()
{
    return static_cast<quint32>(MigrationDatabase::currentVersion(MigrationDatabase::Editor));
}

/// Accepts connections and says nothing, like a machine behind a broken network.
class SilentServer
{
public:
    SilentServer()
    {
        m_address.sin_family = AF_INET;
        m_address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof m_address;
        auto* const address = reinterpret_cast<sockaddr*>(&m_address);
        if (::bind(m_socket, address, size) != 0 || ::listen(m_socket, 10) != 0 ||
            ::getsockname(m_socket, address, &size) != 0)
            qFatal("no port to listen on");
    }
    ~SilentServer() { ::close(m_socket); }
    SilentServer(const SilentServer&) = delete;
    SilentServer& operator=(const SilentServer&) = delete;

    unsigned int port() const { return ntohs(m_address.sin_port); }

private:
    const int m_socket = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in m_address = {};
};

} // namespace

/// What the stored version says, may say, and who else may change it.
class SchemaVersionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsStoredVersions_data()
    {
        QTest::addColumn<int>("backend");
        QTest::addColumn<QString>("change");
        QTest::addColumn<quint32>("version");
        QTest::addColumn<bool>("migrates");
        const auto addVersion = [](const char* change, quint32 version, bool migrates) {
            addCase(QString::fromLatin1(change), QString::fromLatin1(change), version, migrates);
        };
        const quint32 invalid = 4294967295U;
        const char* const sqliteOnly[] = {"UPDATE feature_defaults SET value = X'00ff'", "DELETE FROM features"};
        addVersion("UPDATE feature_defaults SET value = '1000'", 1000, false);
        addVersion("UPDATE feature_defaults SET value = '4294967304'", 8, true);
        addVersion("UPDATE feature_defaults SET value = '-1'", invalid, false);
        addVersion("ALTER TABLE feature_defaults RENAME COLUMN value TO other", invalid, false);
        // A current network whose version is lost is not one from before there were versions.
        for (const char* damage :
             {"UPDATE feature_defaults SET value = 'abc'", "UPDATE feature_defaults SET value = ''",
              "UPDATE feature_defaults SET value = '0'", "UPDATE feature_defaults SET value = NULL",
              "DELETE FROM feature_defaults", "DELETE FROM feature_defaults; DELETE FROM features",
              "DROP TABLE feature_defaults", "DROP TABLE feature_defaults; DROP TABLE features",
              "UPDATE features SET module = 'm'", "UPDATE features SET module = NULL", "UPDATE features SET type = 'i'",
              "UPDATE features SET name = 'cablesversion '"})
            addVersion(damage, 0, false);
        addVersion("UPDATE feature_defaults SET value = '2'", 2, false);
        addVersion("UPDATE feature_defaults SET value = '5'", 5, false);
        for (const char* damage : sqliteOnly)
            QTest::newRow(damage) << static_cast<int>(Enumerations::SQLite3) << QString::fromLatin1(damage) << 0U
                                  << false;
    }
    /// The tables are those of version 8, and where these show nothing, of version 1.
    void readsStoredVersions()
    {
        QFETCH(QString, change);
        QFETCH(quint32, version);
        QFETCH(bool, migrates);
        const bool hasTraces = !change.contains(QLatin1String("; D"));
        for (const int tables : {8, 1}) {
            if (tables == 1 && (version != 0 || !hasTraces))
                continue;
            const LogCapture log;
            MigrationDatabase db(MigrationDatabase::Editor, tables, MigrationDatabase::With);
            db.execute(change.split(QLatin1Char(';')));
            const QStringList before = db.content();
            QCOMPARE(db.manager().DbVersion(), version);
            QCOMPARE(db.manager().MigrationSteps(), version > currentVersion() ? 0 : currentVersion() - version);
            const Database::FailureWatch watch;
            QCOMPARE(db.manager().Migrate(), migrates);
            QCOMPARE(watch.failed(), !migrates);
            QCOMPARE(watch.reason().contains(QStringLiteral("nothing was changed")), version < 8);
            QVERIFY(log.contains(watch.reason()));
            if (migrates) {
                QCOMPARE(db.manager().DbVersion(), currentVersion());
                QCOMPARE(db.rows(QStringLiteral("SELECT count(*) FROM features AS f JOIN feature_defaults AS d "
                                                "ON d.featureid = f.id WHERE name = 'CablesVersion' AND "
                                                "module = '' AND type = 'I' AND NOT admin = (1 = 1)")),
                         QStringLiteral("1"));
            } else {
                QCOMPARE(db.content(), before);
                QCOMPARE(db.backupContent(), QStringList());
            }
        }
    }

    void readsNoneWithoutDatabase_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("atLeast"); // ms
        QTest::newRow("no worker") << -1 << 0;
        QTest::newRow("no type") << int(Enumerations::None) << 0;
        // It may be starting up.
        QTest::newRow("refused") << int(Enumerations::Postgres) << 1500;
        QTest::newRow("silent") << int(Enumerations::Postgres) << 2500;
    }
    void readsNoneWithoutDatabase()
    {
        QFETCH(int, type);
        QFETCH(int, atLeast);
        const LogCapture log;
        const SilentServer silent;
        const auto config = serverConfig(QStringLiteral("none"));
        config->SetType(static_cast<Enumerations::DatabaseType>(qMax(0, type)));
        config->SetHostName(QStringLiteral("127.0.0.1"));
        const bool isSilent = qstrcmp(QTest::currentDataTag(), "silent") == 0;
        config->SetPort(isSilent ? silent.port() : 1);
        const RunningWorker worker(config);
        EditorMigrationManager manager;
        manager.setDbWorker(type < 0 ? nullptr : worker.get());
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!manager.WaitForConnected());
        const qint64 waited = timer.elapsed();
        QVERIFY2(waited >= atLeast && waited < (isSilent ? 7000 : 5000), qPrintable(QString::number(waited)));
        if (isSilent)
            return;
        QCOMPARE(manager.DbVersion(), manager.InvalidVersion());
        QCOMPARE(manager.MigrationSteps(), 0U);
        QVERIFY(!manager.Migrate());
    }

    void takesNoLockedFileForAFreshOne()
    {
        const LogCapture log;
        const TestDatabase database(Enumerations::SQLite3);
        RunningWorker worker(database.config());
        EditorMigrationManager manager;
        manager.setDbWorker(worker.get());
        QVERIFY(manager.Migrate());
        {
            const FileLocker locker(database.name());
            QVERIFY(locker.isHeld());
            QCOMPARE(manager.DbVersion(), manager.InvalidVersion());
        }
        QCOMPARE(manager.DbVersion(), currentVersion());
    }

    void goesOnWhereAnotherProgramIs_data() { addBackends(); }
    /// The other program does all its work after this one has read the version: what this one would do is outdated.
    void goesOnWhereAnotherProgramIs()
    {
        MigrationDatabase db(MigrationDatabase::Editor, 1, MigrationDatabase::With);
        const RunningWorker otherWorker(db.database().config());
        EditorMigrationManager other;
        other.setDbWorker(otherWorker.get());
        static std::function<void()> interlude;
        interlude = [&] {
            QVERIFY(other.Migrate());
            db.execute({QStringLiteral("INSERT INTO ce_insulation (id, name) VALUES ('i', 'PE')")});
        };
        const QtMessageHandler handler = [](QtMsgType, const QMessageLogContext&, const QString& text) {
            if (text.contains(QLatin1String("Migrate FROM:")) && interlude)
                std::exchange(interlude, nullptr)();
        };
        const QtMessageHandler previous = qInstallMessageHandler(handler);
        const bool migrated = db.manager().Migrate();
        qInstallMessageHandler(previous);
        QVERIFY(migrated);
        QVERIFY(!interlude);
        QCOMPARE(db.manager().DbVersion(), currentVersion());
        QCOMPARE(db.rows(QStringLiteral("SELECT name FROM ce_insulation")), QStringLiteral("PE"));
    }

    void tellsWhyACommitFails_data() { addBackends(); }
    void tellsWhyACommitFails()
    {
        const LogCapture log;
        MigrationDatabase db(MigrationDatabase::Editor, 8);
        db.execute(
            {QStringLiteral("CREATE TABLE parent (id INTEGER PRIMARY KEY)"),
             QStringLiteral("CREATE TABLE child (id INTEGER REFERENCES parent(id) DEFERRABLE INITIALLY DEFERRED)")});
        if (db.isFile())
            db.execute({QStringLiteral("PRAGMA foreign_keys = ON"),
                        QStringLiteral("CREATE TRIGGER late AFTER UPDATE ON feature_defaults BEGIN "
                                       "INSERT INTO child VALUES (5); END")});
        else
            db.execute(
                {QStringLiteral("CREATE FUNCTION late() RETURNS trigger LANGUAGE plpgsql AS "
                                "$$ BEGIN INSERT INTO child VALUES (5); RETURN NULL; END $$"),
                 QStringLiteral("CREATE TRIGGER late AFTER UPDATE ON feature_defaults EXECUTE FUNCTION late()")});
        const Database::FailureWatch watch;
        QVERIFY(!db.manager().Migrate());
        QVERIFY2(watch.reason().contains(QStringLiteral("cannot be committed: ")) &&
                     watch.reason().contains(QStringLiteral("foreign key"), Qt::CaseInsensitive),
                 qPrintable(watch.reason()));
        QVERIFY(log.messages(QtWarningMsg, QStringLiteral("qor.migration.editor")).last().contains(watch.reason()));
    }
};

DATAACCESS_TEST(SchemaVersionTest)

#include "SchemaVersionTest.moc"
