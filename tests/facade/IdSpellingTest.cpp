#include "facade/FacadeFixture.h"
#include "sqlite2/Fixtures.h"
#include "support/LogCapture.h"
#include "support/TestMain.h"
#include "support/UnprivilegedUser.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSqlRecord>
#include <QTest>

using namespace DataAccess;
using namespace TestSupport;

namespace {

QString literal(const QString& text)
{
    return QLatin1Char('\'') + QString(text).replace(QLatin1Char('\''), QStringLiteral("''")) + QLatin1Char('\'');
}

/// Opens the database by the facade, and gives what the log had to say of ids.
QStringList open(const TestDatabase& database)
{
    const auto config = database.config();
    const LogCapture log;
    if (!DataAccessFacade::Instance()->AddDatabase(config))
        return {DataAccessFacade::Instance()->LastError(config)};
    DataAccessFacade::Instance()->RemoveDatabase(config);
    return log.messages(QtWarningMsg, QStringLiteral("qor.migrationLog")) +
           log.messages(QtCriticalMsg, QStringLiteral("qor.migrationLog"));
}

/// Calls @p visit with the name of each table and each of its rows.
template <typename Function>
void forEachRow(const TestDatabase& database, Function visit)
{
    RunningWorker(database.config()).run([&](Interfaces::IDatabase& db) {
        for (const QString& table : db.Tables()) {
            QSqlQuery query = db.Exec(QStringLiteral("SELECT * FROM %1").arg(table));
            while (query.next())
                visit(table, query.record());
        }
    });
}

QStringList content(const TestDatabase& database)
{
    QStringList rows;
    forEachRow(database, [&rows](const QString& table, const QSqlRecord& record) {
        QStringList values{table};
        for (int column = 0; column < record.count(); ++column)
            values.append(record.value(column).toString());
        rows.append(values.join(QLatin1Char('|')));
    });
    if (database.type() == Enumerations::Postgres)
        rows.append(execute(database, "SELECT string_agg(pg_get_constraintdef(oid), ',' ORDER BY conname) "
                                      "FROM pg_constraint")
                        .toString());
    rows.sort();
    return rows;
}

/// Adds rows to all tables, as a legacy library returned them.
void fill(const TestDatabase& database)
{
    const QJsonObject tables = expectedContent(QStringLiteral("cables")).value(QLatin1String("tables")).toObject();
    QStringList statements;
    for (auto table = tables.begin(); table != tables.end(); ++table) {
        const QJsonObject data = table.value().toObject().value(QLatin1String("data")).toObject();
        const QJsonArray columns = data.value(QLatin1String("result_columns")).toArray();
        const bool isOurs = table.key().contains(QLatin1Char('_')) && table.key() != QLatin1String("feature_defaults");
        if (!isOurs)
            continue;
        statements.append(QStringLiteral("DELETE FROM %1").arg(table.key())); // the default types
        for (const auto& row : data.value(QLatin1String("rows")).toArray()) {
            QStringList names, values;
            for (int i = 1; i < columns.size(); ++i) { // after the number of the row
                const QJsonValue value = row.toArray().at(i);
                names.append(columns.at(i).toArray().first().toString());
                values.append(value.isNull() ? QStringLiteral("NULL") : literal(value.toString()));
            }
            values.replaceInStrings(QStringLiteral("'CURRENT_TIMESTAMP'"), QStringLiteral("NULL"));
            statements.append(QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                                  .arg(table.key(), names.join(QLatin1Char(',')), values.join(QLatin1Char(','))));
        }
    }
    statements.append(
        QStringLiteral("INSERT INTO evaluation (id, tid, cid) SELECT 1, t.id, t.cable FROM pd_task AS t"));
    execute(database, statements);
}

} // namespace

/// Rows whose ids other programs have spelled in ways of their own.
class IdSpellingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyIdIsBroughtToOneSpelling_data()
    {
        QTest::addColumn<int>("backend");
        QTest::addColumn<QString>("spelling"); // with %1 for the digits in capitals
        for (const int backend : {int(Enumerations::SQLite3), int(Enumerations::Postgres)}) {
            QTest::addRow("capitals, %d", backend) << backend << QStringLiteral("{%1}");
            QTest::addRow("no braces, %d", backend) << backend << QStringLiteral("%1");
            QTest::addRow("blanks, %d", backend) << backend << QStringLiteral("{%1} \t");
        }
    }
    void everyIdIsBroughtToOneSpelling()
    {
        QFETCH(QString, spelling);
        const TestDatabase database;
        QCOMPARE(open(database), QStringList());
        fill(database);
        open(database); // One of the rows has an id in capitals.
        const QStringList before = content(database);
        // Whatever is an id, or a list of ids, in whatever column.
        static const QRegularExpression ids(QStringLiteral("^([{][0-9a-f-]{36}[}]#?)+$"));
        QStringList statements;
        forEachRow(database, [&](const QString& table, const QSqlRecord& record) {
            for (int column = 0; column < record.count(); ++column) {
                const QString text = record.value(column).toString();
                QStringList parts;
                for (const QString& part : text.split(QLatin1Char('#')))
                    parts.append(spelling.arg(part.mid(1, 36).toUpper()));
                if (ids.match(text).hasMatch())
                    statements.append(QStringLiteral("UPDATE %1 SET %2 = %3 WHERE %2 = %4")
                                          .arg(table, record.fieldName(column), literal(parts.join(QLatin1Char('#'))),
                                               literal(text)));
            }
        });
        execute(database, statements);
        QVERIFY(content(database) != before);
        const QStringList told = open(database);
        QCOMPARE(content(database), before);
        const QString line = QStringLiteral("Ids brought to one spelling: table pd_evaluation, column taskid, 1 rows");
        QVERIFY2(told.contains(line), qUtf8Printable(told.join(QLatin1Char('\n'))));
        QCOMPARE(open(database), QStringList());
    }

    /// Nothing but the spelling tells which row a reference means.
    void twoRowsOfOneIdStayAsTheyAre_data() { addBackends(); }
    void twoRowsOfOneIdStayAsTheyAre()
    {
        const TestDatabase database;
        open(database);
        const QString a = QStringLiteral("{aaaaaaaa-0000-4000-8000-00000000000a}");
        const QString b = QStringLiteral("{bbbbbbbb-0000-4000-8000-00000000000b}");
        const QString c = QStringLiteral("{cccccccc-0000-4000-8000-00000000000c}");
        const QString addOwner = QStringLiteral("INSERT INTO ce_owner (id) VALUES ('%1')");
        const QString addCable = QStringLiteral("INSERT INTO ce_cable (id, owner) VALUES ('%1', '%2')");
        const QString addRoute = QStringLiteral("INSERT INTO ce_route (id, points) VALUES ('%1', '%2')");
        const QString addEvaluation = QStringLiteral("INSERT INTO pd_evaluation (taskid) VALUES ('%1')");
        const QString addTask = QStringLiteral("INSERT INTO pd_task (id, comment, station) VALUES ('%1', '%1', '%2')");
        execute(database,
                {addOwner.arg(a), addOwner.arg(a.toUpper()), addOwner.arg(b.toUpper()), addOwner.arg(b.mid(1, 36)),
                 addTask.arg(a, QStringLiteral("no id")), addTask.arg(a.toUpper(), QString()),
                 addEvaluation.arg(a.toUpper()), addCable.arg(a, a.toUpper()), addCable.arg(b, b.mid(1, 36)),
                 addRoute.arg(a, a.toUpper() + QLatin1String("##x"))});
        const QStringList before = content(database);
        const QStringList told = open(database);
        QCOMPARE(content(database), before);
        QCOMPARE(told.size(), 4);
        QCOMPARE(told.last(), QStringLiteral("Two rows of the table \"pd_task\" have one id in two spellings, and stay "
                                             "as they are: \"%1\"")
                                  .arg(a.toUpper()));

        // All others are changed.
        execute(database, {addOwner.arg(c.toUpper()), addCable.arg(c.toUpper(), c.toUpper())});
        QCOMPARE(open(database).size(), told.size() + 3);
        const auto isUpper = QStringLiteral("|%1").arg(c.toUpper());
        QVERIFY(content(database).filter(isUpper).isEmpty() && content(database).size() == before.size() + 2);
    }

    void whatCannotBeWrittenIsOpenedToBeRead()
    {
        const TestDatabase database(Enumerations::SQLite3);
        open(database);
        const auto setWritable = [&](bool isWritable) {
            const QFile::Permissions reading = QFile::ReadOwner | QFile::ReadOther;
            const QFile::Permissions writing = QFile::WriteOwner | QFile::WriteOther;
            return QFile::setPermissions(QFileInfo(database.name()).path(),
                                         reading | QFile::ExeOwner | QFile::ExeOther | QFile::WriteOwner) &&
                   QFile::setPermissions(database.name(), isWritable ? reading | writing : reading);
        };
        execute(database,
                {QStringLiteral("INSERT INTO ce_owner (id) VALUES ('AAAAAAAA-0000-4000-8000-00000000000A')")});
        const QStringList before = content(database);
        QVERIFY(setWritable(false));
        QStringList told;
        {
            const UnprivilegedUser user;
            told = open(database);
        }
        QVERIFY(setWritable(true));
        QCOMPARE(told.filter(QStringLiteral("cannot be brought to one spelling")).size(), 1);
        QCOMPARE(content(database), before);
    }
};

DATAACCESS_TEST(IdSpellingTest)

#include "IdSpellingTest.moc"
