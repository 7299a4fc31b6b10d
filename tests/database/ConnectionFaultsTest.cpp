#include "database/Database.h"
#include "database/DbException.h"
#include "database/Failure.h"
#include "support/FileLocker.h"
#include "support/LogCapture.h"
#include "support/PrivateServer.h"
#include "support/RunningWorker.h"
#include "support/Scalar.h"
#include "support/TestDatabase.h"
#include "support/TestMain.h"
#include "support/UnprivilegedUser.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTest>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace DataAccess;
using namespace DataAccess::Exceptions;
using Database::DatabaseConfig;
using Interfaces::IDatabase;
using TestSupport::LogCapture;
using TestSupport::RunningWorker;
using TestSupport::scalar;
using TestSupport::TestDatabase;

namespace {

QByteArray content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Makes a database of many pages, and returns its bytes.
QByteArray fill(const TestDatabase& database)
{
    Database::Database db(database.config());
    db.Exec(QStringLiteral("CREATE TABLE t AS SELECT zeroblob(100000) AS a"));
    db.Disconnect();
    return content(database.name());
}

} // namespace

/// Files that are no databases, servers that are not there: a clear error in good time, and nothing changed.
class ConnectionFaultsTest : public QObject
{
    Q_OBJECT

    /// Connects in vain, and returns why: in good time, logged, and with the exception that goes with it.
    static QString connectError(const std::shared_ptr<DatabaseConfig>& config, bool retriable)
    {
        constexpr qint64 patience = 8000; // the busy time-out, and what a slow machine needs on top
        const LogCapture log;
        Database::Database db(config);
        QElapsedTimer timer;
        timer.start();
        if (db.Connect() || db.IsOpen())
            return QStringLiteral("connected");
        if (timer.elapsed() > patience || db.WasBlockedByStartup() != retriable)
            return QStringLiteral("late, or the wrong advice to try again");
        return log.contains(QStringLiteral("Can't open connection \"")) ? db.OpenError() : QStringLiteral("not logged");
    }

    /// Has the server end the connection of @p db, and waits until it has.
    static void endConnection(const TestDatabase& database, IDatabase& db)
    {
        Database::Database other(database.config());
        const int process = scalar(db, "SELECT pg_backend_pid()").toInt();
        other.Exec(QStringLiteral("SELECT pg_terminate_backend(%1)").arg(process));
        const QString gone = QStringLiteral("SELECT FROM pg_stat_activity WHERE pid = %1").arg(process);
        while (other.Read(gone)->next()) {
        }
    }

    /// Statements of all kinds, of which five insert a 7 into the table t; @p row does so as well.
    static std::vector<std::function<void(IDatabase&)>> statements(Interfaces::IRowWriter& row)
    {
        static const QString insert = QStringLiteral("INSERT INTO t VALUES (7)");
        return {[](IDatabase& db) { db.Exec(insert); },
                [](IDatabase& db) { db.Exec(db.PreparedQuery(insert)); },
                [](IDatabase& db) { db.Query().exec(insert); },
                [](IDatabase& db) { db.Read(QStringLiteral("SELECT * FROM t")); },
                [](IDatabase& db) { db.Tables(); },
                [](IDatabase& db) {
                    Database::Transaction transaction = db.Transaction();
                    db.Exec(insert);
                    transaction.commit();
                },
                [&row](IDatabase&) {
                    row.run();
                    row.finish();
                }};
    }

    /// Whether @p statement fails because the database is locked or out of reach.
    static bool isUnavailable(const std::function<void()>& statement)
    {
        try {
            statement();
        } catch (const DbException& error) {
            return error.isUnavailable();
        }
        qFatal("a statement that cannot be run has succeeded");
    }

private Q_SLOTS:
    void unusableFiles_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("reason");
        QTest::addColumn<bool>("retriable");
        const TestDatabase database(Enumerations::SQLite3);
        const QByteArray whole = fill(database);
        QTest::newRow("text") << QByteArray("Dear database,\n") << "no database" << false;
        QTest::newRow("SQLite 2") << QByteArray("** This file contains an SQLite 2.1 database **\0rest", 53)
                                  << "SQLite 2" << false;
        QTest::newRow("half") << whole.left(whole.size() / 2) << "malformed" << false;
        QTest::newRow("header") << whole.left(60) << "malformed" << false;
        QTest::newRow("schema") << whole.left(100) + QByteArray(whole.size() - 100, '\xff') << "malformed" << false;
        QTest::newRow("folder") << QByteArray() << "is a folder" << true;
        QTest::newRow("missing folder") << QByteArray() << "folder of the database file does not exist" << true;
        QTest::newRow("pipe") << QByteArray() << "no regular file" << false;
    }
    void unusableFiles()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, reason);
        QFETCH(bool, retriable);
        const TestDatabase database(Enumerations::SQLite3);
        const QByteArray kind = QTest::currentDataTag();
        const auto config = database.config();
        if (kind == "folder") {
            QVERIFY(QDir().mkdir(database.name()));
        } else if (kind == "pipe") {
            QCOMPARE(mkfifo(QFile::encodeName(database.name()).constData(), 0600), 0);
        } else if (kind == "missing folder") {
            config->SetDatabaseName(database.name() + QStringLiteral("/none.vbk"));
        } else {
            QFile file(database.name());
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        }
        const auto entries = [&] {
            return QFileInfo(database.name()).dir().entryList(QDir::AllEntries | QDir::System);
        };
        const QStringList before = entries();
        const QString error = connectError(config, retriable);
        QVERIFY2(error.contains(reason), qUtf8Printable(error));
        QCOMPARE(entries(), before);
        QVERIFY(kind == "pipe" || content(database.name()) == bytes);
    }

    void emptyFileIsAnEmptyDatabase()
    {
        const TestDatabase database(Enumerations::SQLite3);
        QFile file(database.name());
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(Database::Database(database.config()).Tables().isEmpty() && file.size() == 0);
    }

    void lockedFile()
    {
        const TestDatabase database(Enumerations::SQLite3);
        const QByteArray before = fill(database);
        {
            const TestSupport::FileLocker locker(database.name());
            QVERIFY(locker.isHeld());
            const QString error = connectError(database.config(), false); // it has been waited for already
            QVERIFY2(error.contains(QStringLiteral("locked")), qUtf8Printable(error));
        }
        QCOMPARE(content(database.name()), before);
        QVERIFY(Database::Database(database.config()).Connect());
    }

    void openingKeepsTheLocksOfOthers()
    {
        const TestDatabase database(Enumerations::SQLite3);
        Database::Database writer(database.config());
        writer.Exec(QStringLiteral("CREATE TABLE t (a INTEGER)"));
        const Database::Transaction transaction = writer.Transaction();
        writer.Exec(QStringLiteral("INSERT INTO t VALUES (1)"));
        QVERIFY(Database::Database(database.config()).Connect());
        QVERIFY(!TestSupport::FileLocker(database.name()).isHeld());
    }

    void filePermissions()
    {
        const TestDatabase database(Enumerations::SQLite3);
        const QByteArray before = fill(database);
        QVERIFY(QFile::setPermissions(QFileInfo(database.name()).path(),
                                      QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ExeOther));
        QVERIFY(QFile::setPermissions(database.name(), QFile::ReadOwner | QFile::ReadOther));
        {
            const TestSupport::UnprivilegedUser user;
            Database::Database db(database.config());
            QCOMPARE(scalar(db, "SELECT length(a) FROM t").toInt(), 100000);
            QVERIFY_EXCEPTION_THROWN(db.Exec(QStringLiteral("DELETE FROM t")), ExecutionException);
        }
        QVERIFY(QFile::setPermissions(database.name(), QFile::WriteOwner));
        {
            const TestSupport::UnprivilegedUser user;
            QCOMPARE(connectError(database.config(), true), QStringLiteral("No permission to read the database file"));
        }
        QVERIFY(QFile::setPermissions(database.name(), QFile::ReadOwner));
        QCOMPARE(content(database.name()), before);
    }

    void unusableServers_data()
    {
        QTest::addColumn<QString>("reason");
        QTest::newRow("wrong password") << "password authentication failed";
        QTest::newRow("unknown database") << "does not exist";
        QTest::newRow("nobody listens") << "refused";
        QTest::newRow("never answers") << "timeout expired";
    }
    void unusableServers()
    {
        QFETCH(QString, reason);
        const QByteArray kind = QTest::currentDataTag();
        const int silent = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address = {};
        socklen_t size = sizeof(address);
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        auto* const generic = reinterpret_cast<sockaddr*>(&address);
        QVERIFY(bind(silent, generic, size) == 0 && getsockname(silent, generic, &size) == 0);
        const auto config = TestSupport::serverConfig(QStringLiteral("postgres"));
        if (kind == "wrong password")
            config->SetPassword(config->Password() + QStringLiteral("x"));
        else if (kind == "unknown database")
            config->SetDatabaseName(QStringLiteral("no such database"));
        else
            config->SetPort(ntohs(address.sin_port));
        if (kind == "never answers")
            QCOMPARE(listen(silent, 8), 0);
        const QString error = connectError(config, true);
        close(silent);
        QVERIFY2(error.contains(reason) && !error.contains(config->Password()), qUtf8Printable(error));
    }

    void endedConnection()
    {
        const TestDatabase database(Enumerations::Postgres);
        Database::Database db(database.config());
        db.Exec(QStringLiteral("CREATE TABLE t (a INTEGER)"));
        const LogCapture log;
        for (const bool isFirstStatement : {true, false}) {
            Database::Transaction transaction = db.Transaction();
            const auto row = db.Write(QStringLiteral("INSERT INTO t VALUES (7)"), [] {});
            db.Exec(QStringLiteral("INSERT INTO t VALUES (1)"));
            endConnection(database, db);
            // What is under way fails; over a new connection it would stay, without the transaction.
            if (isFirstStatement)
                QVERIFY_EXCEPTION_THROWN(db.Exec(QStringLiteral("INSERT INTO t VALUES (2)")), ExecutionException);
            else
                QVERIFY(!transaction.commit() && !transaction.lastError().isEmpty());
            for (const auto& statement : statements(*row)) {
                QVERIFY_EXCEPTION_THROWN(statement(db), DbException);
                QVERIFY(isUnavailable([&] { statement(db); }));
            }
            QVERIFY(!transaction.commit() && !transaction.isOpen());
        }
        QCOMPARE(scalar(db, "SELECT count(*) FROM t").toInt(), 0);
    }

    void endedWhileIdle()
    {
        const TestDatabase database(Enumerations::Postgres);
        Database::Database db(database.config());
        db.Exec(QStringLiteral("CREATE TABLE t (a INTEGER)"));
        const LogCapture log;
        const auto row = db.Write(QStringLiteral("INSERT INTO t VALUES (7)"), [] {});
        const auto all = statements(*row);
        for (const auto& statement : all) {
            endConnection(database, db);
            statement(db);
        }
        QSqlQuery& prepared = db.PreparedQuery(QStringLiteral("INSERT INTO t VALUES (:a)"));
        prepared.bindValue(QStringLiteral(":a"), 7);
        endConnection(database, db);
        db.Exec(prepared);
        // Each has had its effect once.
        QCOMPARE(scalar(db, "SELECT count(*) FROM t WHERE a = 7").toInt(), 6);
        QCOMPARE(log.messages(QtCriticalMsg, QStringLiteral("qor.database")), QStringList());
        const QStringList warnings = log.messages(QtWarningMsg, QStringLiteral("qor.database"));
        QCOMPARE(warnings.size(), static_cast<int>(all.size()) + 1);
        QVERIFY2(warnings[0].contains(QStringLiteral("terminating connection")), qUtf8Printable(warnings[0]));
    }

    void foundDead()
    {
        const TestDatabase database(Enumerations::Postgres);
        Database::Database db(database.config());
        const LogCapture log;
        const auto breakOff = [&] {
            db.Connect();
            const auto isConnection = [&](int file) {
                sockaddr_in peer = {};
                socklen_t size = sizeof(peer);
                return getpeername(file, reinterpret_cast<sockaddr*>(&peer), &size) == 0 &&
                       peer.sin_family == AF_INET && ntohs(peer.sin_port) == database.config()->Port();
            };
            int file = 0;
            while (!isConnection(file))
                ++file;
            shutdown(file, SHUT_WR); // nothing is to be seen of it until something is sent
        };
        breakOff();
        QVERIFY(db.Read(QStringLiteral("SELECT 1"))->next());
        breakOff();
        QVERIFY(db.Exec(db.PreparedQuery(QStringLiteral("SELECT 1"))));
        breakOff();
        QVERIFY(db.Transaction().commit());
        // A busy server takes a while until it ends a connection.
        db.Exec(QStringLiteral("CREATE SEQUENCE s"));
        QVERIFY(db.Read(QStringLiteral("SELECT pg_sleep(0.1), CASE nextval('s') WHEN 1 THEN "
                                       "pg_terminate_backend(pg_backend_pid()) END, pg_sleep(0.1)"))
                    ->next());
    }

    void lockedOrOutOfReach_data()
    {
        QTest::addColumn<int>("backend");
        QTest::addColumn<QString>("limit");
        QTest::addColumn<bool>("expected");
        const int sqlite = Enumerations::SQLite3;
        const int postgres = Enumerations::Postgres;
        QTest::newRow("busy") << sqlite << "PRAGMA busy_timeout = 0" << true;
        QTest::newRow("lock time-out") << postgres << "SET lock_timeout = 1" << true;
        QTest::newRow("statement time-out") << postgres << "SET statement_timeout = 20" << true;
        QTest::newRow("no SQL, SQLite") << sqlite << QString() << false;
        QTest::newRow("no SQL, PostgreSQL") << postgres << QString() << false;
    }
    void lockedOrOutOfReach()
    {
        QFETCH(QString, limit);
        QFETCH(bool, expected);
        const TestDatabase database;
        Database::Database db(database.config());
        Database::Database other(database.config());
        const LogCapture log;
        db.Exec(QStringLiteral("CREATE TABLE t (a INTEGER)"));
        const auto row = db.Write(QStringLiteral("INSERT INTO t VALUES (7)"), [] {});
        if (limit.isEmpty()) {
            db.Exec(QStringLiteral("DROP TABLE t"));
        } else {
            db.Exec(limit);
            const bool isSqlite = database.type() == Enumerations::SQLite3;
            other.Exec(isSqlite ? QStringLiteral("BEGIN EXCLUSIVE") : QStringLiteral("BEGIN"));
            if (!isSqlite)
                other.Exec(QStringLiteral("LOCK TABLE t"));
        }
        for (const std::function<void()>& statement : std::vector<std::function<void()>>{
                 [&] { db.Exec(QStringLiteral("INSERT INTO t VALUES (1)")); },
                 [&] { db.Read(QStringLiteral("SELECT * FROM t")); },
                 [&] { db.IDatabase::Write(QStringLiteral("DELETE FROM t"), [] {})->run(); }, [&] { row->run(); }})
            QCOMPARE(isUnavailable(statement), expected);
        if (database.type() == Enumerations::SQLite3 && expected) {
            const Database::FailureWatch watch;
            const Database::Transaction transaction = db.WriteTransaction();
            QVERIFY(!transaction.isOpen() && transaction.isUnavailable() && watch.isUnavailable());
            QVERIFY(watch.reason().contains(QStringLiteral("locked")));
        }
    }

    void restartedServer()
    {
        TestSupport::PrivateServer server;
        RunningWorker worker(server.config());
        worker.run([](IDatabase& db) { db.Exec(QStringLiteral("CREATE TABLE t AS SELECT 1 AS a")); });
        std::promise<void> started;
        Database::Task<bool> task([&](IDatabase& db) {
            Database::Transaction transaction = db.Transaction();
            db.Exec(QStringLiteral("INSERT INTO t VALUES (2)"));
            started.set_value();
            db.Exec(QStringLiteral("SELECT pg_sleep(60)"));
            return transaction.commit();
        });
        worker.get()->insert(task.toJob());
        started.get_future().wait();
        server.restart();
        QVERIFY_EXCEPTION_THROWN(task.Result(), ExecutionException);
        QCOMPARE(worker.run([](IDatabase& db) { return scalar(db, "SELECT count(*) FROM t").toInt(); }), 1);
    }
};

DATAACCESS_TEST(ConnectionFaultsTest)
#include "ConnectionFaultsTest.moc"
