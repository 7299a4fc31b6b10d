#include "database/Failure.h"
#include "migration/MigrationDatabase.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"
#include "support/UnprivilegedUser.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <csignal>
#include <sys/resource.h>

using namespace DataAccess;
using namespace TestSupport;

namespace {

/// Lets no file of the process grow beyond a size while it lives, as a full disk would.
class SmallFiles
{
public:
    explicit SmallFiles(rlim_t size)
        : m_handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        const struct rlimit small = {size, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~SmallFiles()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    SmallFiles(const SmallFiles&) = delete;
    SmallFiles& operator=(const SmallFiles&) = delete;

private:
    struct rlimit m_before = {};
    void (*m_handler)(int);
};

} // namespace

/// The copy that is made before the first step of a migration.
class MigrationBackupTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void holdsWhatWasThere_data()
    {
        QTest::addColumn<int>("backend");
        QTest::addColumn<QString>("preparation");
        QTest::addColumn<bool>("wanted");
        const QString nothing = QStringLiteral("SELECT 1");
        addCase(QStringLiteral("wanted"), nothing, true);
        addCase(QStringLiteral("not wanted"), nothing, false);
        QTest::newRow("SQLite, with a log")
            << static_cast<int>(Enumerations::SQLite3) << QStringLiteral("PRAGMA journal_mode = WAL") << true;
    }
    void holdsWhatWasThere()
    {
        QFETCH(QString, preparation);
        QFETCH(bool, wanted);
        const LogCapture log;
        MigrationDatabase db(MigrationDatabase::Editor, 5, MigrationDatabase::With);
        db.config().SetBackupBeforeMigration(wanted);
        db.execute({preparation});
        QStringList before = db.content();
        // What others have in the database is copied with a file only.
        if (!db.isFile())
            before = before.filter(QRegularExpression(QStringLiteral("^(ce_(?!.*_tmp)|feature|evaluation)")));
        for (int opening = 0; opening < 2; ++opening) {
            QVERIFY(db.manager().Migrate());
            QCOMPARE(db.backupContent(), wanted ? before : QStringList());
        }
    }

    void keepsTheMigrationFromStarting_data()
    {
        QTest::addColumn<int>("backend");
        QTest::addColumn<QString>("words");
        const auto sqlite = static_cast<int>(Enumerations::SQLite3);
        QTest::newRow("SQLite, no room") << sqlite << QStringLiteral("disk");
        QTest::newRow("SQLite, no right") << sqlite << QStringLiteral("Permission denied");
        QTest::newRow("SQLite, damaged page") << sqlite << QStringLiteral("damaged");
        QTest::newRow("PostgreSQL") << static_cast<int>(Enumerations::Postgres) << QStringLiteral("no copies");
    }
    void keepsTheMigrationFromStarting()
    {
        QFETCH(QString, words);
        const LogCapture log;
        MigrationDatabase db(MigrationDatabase::Editor, 1, MigrationDatabase::With);
        if (db.isFile())
            db.execute({QStringLiteral("CREATE TABLE large AS SELECT zeroblob(3000000) AS bytes")});
        else
            db.execute({QStringLiteral("CREATE FUNCTION refuse() RETURNS event_trigger LANGUAGE plpgsql AS "
                                       "$$ BEGIN RAISE EXCEPTION 'no copies'; END $$"),
                        QStringLiteral("CREATE EVENT TRIGGER refuse ON ddl_command_end WHEN TAG IN ('CREATE TABLE AS') "
                                       "EXECUTE FUNCTION refuse()")});
        const QStringList before = db.content();
        if (words == QLatin1String("damaged")) {
            QFile file(db.database().name());
            QVERIFY(file.open(QIODevice::ReadWrite) && file.seek(file.size() - 4096) &&
                    file.write("\xff\xff\xff", 3) == 3);
        }
        const auto attempt = [&] {
            if (words == QLatin1String("Permission denied")) {
                const QString folder = QFileInfo(db.database().name()).path();
                const QFile::Permissions permissions = QFile::permissions(folder);
                QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner);
                const bool migrated = [&] {
                    const UnprivilegedUser user;
                    return db.manager().Migrate();
                }();
                QFile::setPermissions(folder, permissions);
                return migrated;
            }
            const SmallFiles limit(words == QLatin1String("disk") ? 1000000 : RLIM_INFINITY);
            return db.manager().Migrate();
        };
        const Database::FailureWatch watch;
        QVERIFY(!attempt());
        QVERIFY2(watch.reason().contains(QStringLiteral("No backup")) && watch.reason().contains(words),
                 qPrintable(watch.reason()));
        QVERIFY(log.contains(watch.reason()));
        QCOMPARE(db.manager().DbVersion(), 1U);
        QCOMPARE(db.backupContent(), QStringList());
        if (words != QLatin1String("damaged"))
            QCOMPARE(db.content(), before);
    }
};

DATAACCESS_TEST(MigrationBackupTest)

#include "MigrationBackupTest.moc"
