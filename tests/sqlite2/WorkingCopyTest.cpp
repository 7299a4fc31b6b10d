#include "database/backends/sqlite2/WorkingCopy.h"

#include "Fixtures.h"
#include "database/backends/sqlite2/LegacyFileError.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"
#include "support/UnprivilegedUser.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>
#include <QVariant>

#include <csignal>
#include <fcntl.h>
#include <functional>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace DataAccess::Database::Sqlite2;
using namespace TestSupport;

namespace {

/// What prepare() says; empty when it succeeds.
QString preparation(const LegacyCopy& legacy)
{
    try {
        WorkingCopy(legacy.path()).prepare();
        return {};
    } catch (const LegacyFileError& error) {
        return error.text();
    }
}

/// The first column of all rows that @p sql finds in the working copy of @p legacy.
QStringList queryCopy(const LegacyCopy& legacy, const QString& sql)
{
    QStringList values;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("copy"));
        database.setDatabaseName(legacy.workingCopy());
        QSqlQuery query(database);
        if (!database.open() || !(query = QSqlQuery(database)).exec(sql))
            values += QStringLiteral("error");
        while (query.next())
            values += query.value(0).toString();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("copy"));
    return values;
}

void write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

/// Puts @p after in the place of @p before, which stands in the file once or more and is as long.
void patch(const LegacyCopy& legacy, const QByteArray& before, const QByteArray& after)
{
    QByteArray bytes = fileBytes(legacy.path());
    QVERIFY(bytes.contains(before));
    QCOMPARE(before.size(), after.size());
    write(legacy.path(), bytes.replace(before, after));
}

/// Starts a process that does @p work and ends.
pid_t startProcess(const std::function<bool()>& work)
{
    const pid_t process = ::fork();
    if (process == 0)
        ::_exit(work() ? 0 : 1);
    return process;
}

/// Waits for its end. True when it ended by itself, and well.
bool endedWell(pid_t process)
{
    int status = 0;
    return ::waitpid(process, &status, 0) == process && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

class WorkingCopyTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void damagedFileLeavesNothing_data()
    {
        QTest::addColumn<QString>("name");
        const QStringList files = QDir(fixturePath(QStringLiteral("damaged"))).entryList({QStringLiteral("*.db")});
        QVERIFY(files.size() >= 17);
        for (const QString& file : files)
            QTest::newRow(qPrintable(file)) << file;
    }

    void damagedFileLeavesNothing()
    {
        QFETCH(QString, name);
        const LegacyCopy legacy(QStringLiteral("damaged/") + name);
        const QStringList files = legacy.files();
        QElapsedTimer timer;
        timer.start();
        const QString error = preparation(legacy);
        QVERIFY(timer.elapsed() < 1000);
        QVERIFY2(error.contains(legacy.path()), qPrintable(error));
        QCOMPARE(legacy.files(), files);
        QVERIFY(legacy.isUnchanged());
    }

    void changedFileIsRefused_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("suffix");
        QTest::newRow("file") << "old.db"
                              << "";
        QTest::newRow("journal appears") << "old.db"
                                         << "-journal";
        QTest::newRow("journal") << "hot.db"
                                 << "-journal";
    }

    void changedFileIsRefused()
    {
        QFETCH(QString, name);
        QFETCH(QString, suffix);
        const LegacyCopy legacy(name);
        QCOMPARE(preparation(legacy), QString());
        const QByteArray copy = fileBytes(legacy.workingCopy());

        QFile changed(legacy.path() + suffix);
        QVERIFY(changed.open(QIODevice::WriteOnly | QIODevice::Append));
        QVERIFY(changed.write("x") == 1);
        changed.close();
        const QByteArray bytes = fileBytes(changed.fileName());
        QVERIFY(preparation(legacy).contains(QLatin1String("has changed since its working copy")));
        QCOMPARE(fileBytes(legacy.workingCopy()), copy);
        QCOMPARE(fileBytes(changed.fileName()), bytes);

        // What the message says helps.
        QVERIFY(QFile::rename(legacy.workingCopy(), legacy.workingCopy() + QLatin1String(".old")));
        QCOMPARE(preparation(legacy), QString());
    }

    void strangeFileInItsPlaceIsRefused_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("text") << QByteArray(3000, 'x');
        QTest::newRow("other database") << fileBytes(fixturePath(QStringLiteral("damaged/sqlite3.db")));
    }

    void strangeFileInItsPlaceIsRefused()
    {
        QFETCH(QByteArray, bytes);
        const LegacyCopy legacy(QStringLiteral("old.db"));
        write(legacy.workingCopy(), bytes);
        QVERIFY(preparation(legacy).contains(legacy.workingCopy()));
        QCOMPARE(fileBytes(legacy.workingCopy()), bytes);
        QCOMPARE(legacy.files().size(), 2);
    }

    void readOnlyFolderIsRefused_data()
    {
        QTest::addColumn<bool>("copyExists");
        QTest::newRow("first opening") << false;
        QTest::newRow("later opening") << true;
    }

    void readOnlyFolderIsRefused()
    {
        QFETCH(bool, copyExists);
        const LegacyCopy legacy(QStringLiteral("old.db"));
        if (copyExists)
            QCOMPARE(preparation(legacy), QString());
        const QStringList files = legacy.files();
        const QFile::Permissions before = QFile::permissions(legacy.folder());
        QVERIFY(QFile::setPermissions(legacy.folder(), QFile::Permissions(0x5555)));
        QString error;
        {
            const UnprivilegedUser user;
            error = preparation(legacy);
        }
        QVERIFY(QFile::setPermissions(legacy.folder(), before));
        QVERIFY2(error.contains(legacy.folder() + QLatin1String(" can't be written")), qPrintable(error));
        QCOMPARE(legacy.files(), files);
    }

    void otherThingsAreRefused()
    {
        const LegacyCopy legacy(QStringLiteral("old.db"));
        QVERIFY(QFile::remove(legacy.path()));
        QVERIFY(preparation(legacy).contains(QLatin1String("no such file")));
        QVERIFY(QDir().mkdir(legacy.path()));
        QVERIFY(preparation(legacy).contains(QLatin1String("no regular file")));
        QVERIFY(QDir().rmdir(legacy.path()));
        // Reading it would wait for a writer for ever.
        QVERIFY(::mkfifo(QFile::encodeName(legacy.path()).constData(), S_IRUSR | S_IWUSR) == 0);
        QVERIFY(preparation(legacy).contains(QLatin1String("no regular file")));
        QVERIFY(!QFile::exists(legacy.workingCopy()));
    }

    void waitsForWriter()
    {
        const LegacyCopy legacy(QStringLiteral("old.db"));
        int ready[2];
        QVERIFY(::pipe(ready) == 0);
        const pid_t writer = startProcess([&] {
            struct flock whole = {};
            whole.l_type = F_WRLCK;
            whole.l_whence = SEEK_SET;
            const int file = ::open(QFile::encodeName(legacy.path()).constData(), O_RDWR);
            const bool locked = ::fcntl(file, F_SETLK, &whole) == 0 && ::write(ready[1], "x", 1) == 1;
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
            return locked && !QFile::exists(legacy.workingCopy()) && ::pwrite(file, "y", 1, 100) == 1;
        });
        char byte = 0;
        QVERIFY(::read(ready[0], &byte, 1) == 1);
        ::close(ready[0]);
        ::close(ready[1]);
        QCOMPARE(preparation(legacy), QString());
        QVERIFY(endedWell(writer));
        // The copy is one of the file as the writer left it.
        QCOMPARE(preparation(legacy), QString());
    }

    void killedWhileMaking()
    {
        const LegacyCopy legacy(QStringLiteral("cables.db"));
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(preparation(legacy), QString());
        const qint64 duration = timer.nsecsElapsed() / 1000;
        const QStringList rows = queryCopy(legacy, QStringLiteral("SELECT id FROM ce_segment ORDER BY rowid"));
        QVERIFY(rows.size() > 1);

        constexpr int attempts = 60;
        int absent = 0;
        for (int i = 0; i < attempts; ++i) {
            QVERIFY(QFile::remove(legacy.workingCopy()));
            const pid_t maker = startProcess([&] { return preparation(legacy).isEmpty(); });
            std::this_thread::sleep_for(std::chrono::microseconds(duration * 3 / 2 * i / attempts));
            ::kill(maker, SIGKILL);
            endedWell(maker);
            // Whatever is there in its place is whole, and opens as such.
            absent += QFile::exists(legacy.workingCopy()) ? 0 : 1;
            if (QFile::exists(legacy.workingCopy()))
                QCOMPARE(queryCopy(legacy, QStringLiteral("PRAGMA integrity_check")),
                         QStringList{QStringLiteral("ok")});
            QCOMPARE(preparation(legacy), QString());
            QCOMPARE(queryCopy(legacy, QStringLiteral("SELECT id FROM ce_segment ORDER BY rowid")), rows);
        }
        QVERIFY2(absent > 0 && legacy.isUnchanged(), "killed too late");
        // Whoever makes the copy clears up after those that were killed.
        QVERIFY(QFile::remove(legacy.workingCopy()));
        QCOMPARE(preparation(legacy), QString());
        QCOMPARE(legacy.files().size(), 2);
    }

    void manyAtOnce()
    {
        const LegacyCopy legacy(QStringLiteral("many.db"));
        for (int round = 0; round < 5; ++round) {
            QFile::remove(legacy.workingCopy());
            std::vector<pid_t> processes(6);
            for (pid_t& process : processes)
                process = startProcess([&] { return preparation(legacy).isEmpty(); });
            for (const pid_t process : processes)
                QVERIFY(endedWell(process));

            QFile::remove(legacy.workingCopy());
            std::vector<QString> errors(4, QStringLiteral("not run"));
            std::vector<std::thread> threads(errors.size());
            for (size_t i = 0; i < threads.size(); ++i)
                threads[i] = std::thread([&, i] { errors[i] = preparation(legacy); });
            for (std::thread& thread : threads)
                thread.join();
            QCOMPARE(errors, std::vector<QString>(4));
            QCOMPARE(queryCopy(legacy, QStringLiteral("PRAGMA integrity_check")), QStringList{QStringLiteral("ok")});
            QCOMPARE(legacy.files().size(), 2);
        }
    }

    void unusableObjectsAreLeftOut()
    {
        const QString objects =
            QStringLiteral("SELECT name FROM sqlite_master WHERE type<>'table' AND sql IS NOT NULL ORDER BY name");
        const LegacyCopy sound(QStringLiteral("plain.db"));
        QCOMPARE(preparation(sound), QString());
        QCOMPARE(queryCopy(sound, objects),
                 (QStringList{QStringLiteral("idx_label"), QStringLiteral("trg"), QStringLiteral("v_small")}));

        const QVector<QPair<QByteArray, QByteArray>> damages = {
            {"SELECT label, v FROM vals", "SELECT label, v FROM gone"},
            {"BEGIN UPDATE negrow", "BEGIN UPDATE nobody"},
            {"CREATE INDEX idx_label ON vals(label)", "DROP TABLE one -- idx_label -- label)"},
            {"CREATE VIEW v_small AS", "CREATE VIEW v_small OR"},
        };
        for (const auto& damage : damages) {
            const LegacyCopy legacy(QStringLiteral("plain.db"));
            patch(legacy, damage.first, damage.second);
            const LogCapture log;
            QCOMPARE(preparation(legacy), QString());
            QCOMPARE(log.messages(QtWarningMsg, QStringLiteral("qor.database")).size(), 1);
            QCOMPARE(queryCopy(legacy, objects).size(), 2);
            QCOMPARE(queryCopy(legacy, QStringLiteral("SELECT count(*) FROM one")), QStringList{QStringLiteral("3")});
            // What stays does not stand in the way of a migration.
            QCOMPARE(queryCopy(legacy, QStringLiteral("ALTER TABLE tpk RENAME TO other")), QStringList());
        }
    }

    void textsOfWindows()
    {
        const LegacyCopy legacy(QStringLiteral("latin1.db"));
        patch(legacy, "M\xfcller", "\x80\x93 \x81\xff!");
        QCOMPARE(preparation(legacy), QString());
        QCOMPARE(queryCopy(legacy, QStringLiteral("SELECT name FROM t")),
                 (QStringList{QString::fromUtf8("€“ \xc2\x81ÿ!"), QString::fromUtf8("Größe 20°C"),
                              QStringLiteral("plain")}));
    }

    void keepsPermissions()
    {
        const LegacyCopy legacy(QStringLiteral("old.db"));
        QVERIFY(QFile::setPermissions(legacy.path(), QFile::ReadOwner));
        QCOMPARE(preparation(legacy), QString());
        const QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
        QCOMPARE(QFile::permissions(legacy.workingCopy()) & others, QFile::Permissions());
    }
};

DATAACCESS_TEST(WorkingCopyTest)

#include "WorkingCopyTest.moc"
