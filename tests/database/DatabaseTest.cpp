#include "database/Database.h"

#include "database/DbException.h"
#include "database/GenericDml.h"
#include "entities/qor/Entity.h"
#include "support/LogCapture.h"
#include "support/Scalar.h"
#include "support/TestDatabase.h"
#include "support/TestMain.h"

#include <QDebug>
#include <QTest>

#include <functional>

using namespace DataAccess;
using namespace DataAccess::Exceptions;
using Database::DatabaseConfig;
using Database::GenericDml;
using QOR::Entities::Entity;
using TestSupport::LogCapture;
using TestSupport::scalar;
using TestSupport::TestDatabase;

/// One connection: its set-up, its statements, and what they throw.
class DatabaseTest : public QObject
{
    Q_OBJECT

    static QStringList errors(const LogCapture& log)
    {
        return log.messages(QtCriticalMsg, QStringLiteral("qor.database"));
    }

private Q_SLOTS:
    void everyCallNeedsTheConnection()
    {
        const TestDatabase database(Enumerations::SQLite3);
        const auto config = [&](const QString& databaseName, int type) {
            auto changed = database.config(QStringLiteral("name"));
            changed->SetDatabaseName(databaseName);
            changed->SetType(static_cast<Enumerations::DatabaseType>(type));
            return changed;
        };
        const QString noDriver = QStringLiteral("Error initialising database \"name\" : \"file\" : \"Driver");
        const char* const invalid = "QSqlDatabase invalid";
        const std::vector<std::tuple<std::shared_ptr<DatabaseConfig>, const char*, QString>> configurations = {
            {nullptr, invalid, QStringLiteral("Config is null")},
            {config(QString(), 2), invalid, QStringLiteral("Invalid Config \"name\" \"\" 2")},
            {config(QStringLiteral("file"), 0), invalid, noDriver},
            {config(QStringLiteral("file"), 17), invalid, noDriver},
            {config(QStringLiteral("/"), 2), "Can't open Connection", QStringLiteral("Using database: \"name\"")}};
        for (const auto& [unusable, reason, message] : configurations) {
            const LogCapture log;
            Database::Database db(unusable);
            QVERIFY2(log.contains(message), qUtf8Printable(message));
            QVERIFY(db.IsValid() == (reason != invalid) && !db.IsOpen());
            QSqlQuery query = QSqlQuery(QSqlDatabase());
            const std::function<void()> calls[] = {[&] { db.Exec(query) || db.ExecBatch(query); },
                                                   [&] { db.Exec(QStringLiteral("SELECT 1")); },
                                                   [&] { db.Tables(); },
                                                   [&] { db.Transaction(); },
                                                   [&] { db.NextId(QStringLiteral("t")); },
                                                   [&] { db.Exec(db.PreparedQuery(QStringLiteral("SELECT 1"))); }};
            for (const auto& call : calls) {
                try {
                    call();
                    QFAIL("no exception");
                } catch (const DbException& error) {
                    QCOMPARE(error.what(), reason);
                    QCOMPARE(error.type(), reason == invalid ? Enumerations::InvalidDb : Enumerations::NotOpen);
                }
            }
            QVERIFY(db.WasBlockedByStartup());
            if (reason != invalid) {
                QCOMPARE(errors(log).size(), static_cast<int>(std::size(calls))); // each has tried once
            } else {
                QVERIFY_EXCEPTION_THROWN(db.Connect(), InvalidDbException);
                QVERIFY_EXCEPTION_THROWN(db.Disconnect(), InvalidDbException);
                QCOMPARE(errors(log).last(), QString::fromLatin1(invalid));
            }
        }
    }

    void failedStatements_data() { TestSupport::addBackends(); }
    void failedStatements()
    {
        const TestDatabase database;
        Database::Database db(database.config());
        db.Exec(QStringLiteral("CREATE TABLE t (id INTEGER PRIMARY KEY)"));
        const auto prepared = [&](const QVariant& id) -> QSqlQuery& {
            QSqlQuery& query = db.Query();
            query.prepare(QStringLiteral("INSERT INTO t (id) VALUES (:id)"));
            query.bindValue(QStringLiteral(":id"), id);
            return query;
        };
        QVERIFY(db.ExecBatch(prepared(QVariantList{1, 2})));
        for (const auto& statement : std::vector<std::function<void()>>{
                 [&] { db.Exec(prepared(2)); },
                 [&] {
                     db.ExecBatch(prepared(QVariantList{3, 2, 4}));
                 },
                 [&] { db.Exec(QStringLiteral("INSERT INTO t (id) VALUES (2)")); },
                 [&] { db.Exec(QStringLiteral("no SQL")); }, [&] { db.NextId(QStringLiteral("missing")); }}) {
            const LogCapture log;
            try {
                statement();
                QFAIL("no exception");
            } catch (const ExecutionException& error) {
                const QString text = QString::fromLocal8Bit(error.what());
                QString message;
                QDebug(&message) << "SQL Error:" << text;
                QCOMPARE(errors(log), {message.trimmed()});
                QVERIFY2(text.contains(QRegularExpression(QStringLiteral("UNIQUE|unique|syntax|missing"))),
                         error.what());
            }
        }
        QVERIFY(!db.WasBlockedByStartup() && db.Disconnect() && db.Disconnect() && !db.IsOpen());
        QCOMPARE(scalar(db, "SELECT max(id) FROM t").toInt(), 3); // a batch is no transaction
    }

    void valuesOfRowsAreNotTold_data()
    {
        QTest::addColumn<QString>("statement");
        QTest::addColumn<QString>("reason");
        const auto add = [](const char* statement, const char* reason) {
            QTest::addRow("%s", reason) << QString::fromLatin1(statement) << QString::fromLatin1(reason);
        };
        add("INSERT INTO p VALUES ('secret', 2, NULL)", "unique constraint \"p_pkey\" (23505)");
        add("INSERT INTO p VALUES ('secret 2', NULL, NULL)", "not-null constraint (23502)");
        add("INSERT INTO p VALUES ('secret 2', 2, 'secret 3')", "foreign key constraint \"p_c_fkey\" (23503)");
        add("INSERT INTO p VALUES ('secret 2', 'secret\nin \"lines\"', NULL)", "for type integer: \"...\" (22P02)");
        add("INSERT INTO p VALUES ('a', '919191919191', NULL)",
            "value \"...\" is out of range for type integer (22003)");
        add("INSERT INTO p VALUES ('secret', 2", "syntax error at end of input (42601)");
    }
    /// The server's words go on with the values, and SQLite's never have them.
    void valuesOfRowsAreNotTold()
    {
        QFETCH(const QString, statement);
        QFETCH(const QString, reason);
        const TestDatabase database(Enumerations::Postgres);
        Database::Database db(database.config());
        db.Exec(QStringLiteral("CREATE TABLE p (a TEXT PRIMARY KEY, b INTEGER NOT NULL, "
                               "c TEXT REFERENCES p (a) DEFERRABLE INITIALLY DEFERRED)"));
        db.Exec(QStringLiteral("INSERT INTO p VALUES ('secret', 1, NULL)"));
        const LogCapture log;
        QString told;
        Database::Transaction transaction = db.Transaction();
        try {
            db.Exec(statement);
            QVERIFY(!transaction.commit());
            told = transaction.lastError();
        } catch (const ExecutionException& error) {
            told = QString::fromLocal8Bit(error.what());
        }
        QVERIFY2(told.contains(reason), qUtf8Printable(told));
        for (const char* value : {"secret", "lines", "9191"})
            QVERIFY2(!told.contains(QLatin1String(value)) && !log.contains(QLatin1String(value)), qUtf8Printable(told));
    }

    void resultsAreHeld_data() { TestSupport::addBackends(); }
    void resultsAreHeld()
    {
        const TestDatabase database;
        Database::Database db(database.config());
        db.Exec(QStringLiteral("CREATE TABLE t (id INTEGER PRIMARY KEY, seen INTEGER)"));
        db.Exec(QStringLiteral("INSERT INTO t VALUES (1, 0), (2, 0), (3, 0), (4, 0), (5, 0), (6, 0), (7, 0)"));
        QSqlQuery rows = db.Exec(QStringLiteral("SELECT id FROM t"));
        while (rows.next())
            db.Exec(QStringLiteral("UPDATE t SET seen = 1 WHERE id = %1").arg(rows.value(0).toInt()));
        QCOMPARE(scalar(db, "SELECT sum(seen) FROM t").toInt(), 7);
        if (database.type() == Enumerations::Postgres)
            QVERIFY_EXCEPTION_THROWN(db.Exec(QStringLiteral("SELECT 1 / (id - 5) FROM t ORDER BY id")),
                                     ExecutionException);
    }

    void idsAndTables_data() { TestSupport::addBackends(); }
    void idsAndTables()
    {
        const TestDatabase database;
        Database::Database db(database.config());
        const bool postgres = database.type() == Enumerations::Postgres;
        const QString table = QStringLiteral("t");
        QCOMPARE(db.Tables(), QStringList());
        db.Exec(postgres ? QStringLiteral("CREATE TABLE t (id SERIAL PRIMARY KEY)")
                         : QStringLiteral("CREATE TABLE t (id INTEGER PRIMARY KEY AUTOINCREMENT)"));
        db.Exec(QStringLiteral("CREATE VIEW seen AS SELECT * FROM t"));
        QCOMPARE(db.Tables(), {table});
        QVERIFY(db.CreateSequence(table));
        QCOMPARE(db.NextId(table), quint64(1));
        db.Exec(postgres ? QStringLiteral("SELECT setval('t_s', 41)") : QStringLiteral("INSERT INTO t VALUES (41)"));
        QCOMPARE(db.NextId(table), quint64(42));
        if (postgres)
            QVERIFY_EXCEPTION_THROWN(db.CreateSequence(table), ExecutionException);
        db.Exec(QStringLiteral("DROP VIEW seen"));
        db.Exec(QStringLiteral("DROP TABLE t")); // the select of the id is not under way any more
    }

    void rowsOfEntities_data() { TestSupport::addBackends(); }
    void rowsOfEntities()
    {
        const TestDatabase database;
        Database::Database db(database.config());
        const QString table = QStringLiteral("things");
        const auto types = db.Converter();
        db.Exec(QStringLiteral("CREATE TABLE things (id TEXT PRIMARY KEY, deleted %1, timestamp %2)")
                    .arg(types->type(Enumerations::Boolean, 0), types->type(Enumerations::TimeStamp, 0)));
        QCOMPARE(GenericDml::count(db, table), 0U);
        Entity kept;
        Entity entity;
        for (Entity* each : {&kept, &entity}) {
            each->SetId(QUuid::createUuid());
            db.Exec(QStringLiteral("INSERT INTO things (id) VALUES ('%1')").arg(each->Id().toString()));
        }
        QVERIFY(GenericDml::deleteFromTable(db, &entity, table));
        QCOMPARE(scalar(db, "SELECT id FROM things WHERE deleted AND timestamp IS NOT NULL").toString(),
                 entity.Id().toString());
        QVERIFY(GenericDml::removeFromTable(db, &entity, table));
        QCOMPARE(GenericDml::count(db, table), 1U);
        db.Exec(QStringLiteral("DROP TABLE things")); // no statement is under way any more

        Entity withoutId;
        for (const auto operation : {&GenericDml::deleteFromTable, &GenericDml::removeFromTable}) {
            const LogCapture log;
            QVERIFY(!operation(db, nullptr, table) && !operation(db, &withoutId, table));
            QVERIFY(errors(log).isEmpty());
            QVERIFY(!operation(db, &entity, table));
            QVERIFY(
                errors(log).join(QString()).contains(QStringLiteral("static bool DataAccess::Database::GenericDml::")));
            QVERIFY(log.contains(table));
        }
        const LogCapture log;
        QCOMPARE(GenericDml::count(db, table), 0U);
        QVERIFY(errors(log).join(QString()).contains(QStringLiteral("GenericDml::count(")) && log.contains(table));
    }
};

DATAACCESS_TEST(DatabaseTest)
#include "DatabaseTest.moc"
