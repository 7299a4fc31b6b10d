#include "Fixtures.h"
#include "database/backends/sqlite2/Sqlite2Driver.h"
#include "support/TestMain.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlField>
#include <QSqlIndex>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTest>
#include <QThread>
#include <QVariant>

#include <memory>
#include <thread>
#include <vector>

using namespace DataAccess::Database::Sqlite2;
using namespace TestSupport;

namespace {

/// A connection of the driver, registered while the object lives.
class Connection
{
public:
    explicit Connection(const LegacyCopy& legacy)
        : m_database(QSqlDatabase::addDatabase(QStringLiteral("QSQLITE2"), QStringLiteral("legacy")))
    {
        m_database.setDatabaseName(legacy.path());
    }
    ~Connection()
    {
        m_database = QSqlDatabase();
        QSqlDatabase::removeDatabase(QStringLiteral("legacy"));
    }
    QSqlDatabase* operator->() { return &m_database; }
    QSqlQuery query(const QString& sql)
    {
        QSqlQuery query(m_database);
        if (!query.exec(sql))
            qWarning("%s", qPrintable(query.lastError().text()));
        return query;
    }
    QString first(const QString& sql)
    {
        QSqlQuery found = query(sql);
        return found.next() ? found.value(0).toString() : QStringLiteral("no row");
    }

private:
    QSqlDatabase m_database;
};

QString quoted(QString name)
{
    return QLatin1Char('"') + name.replace(QLatin1Char('"'), QLatin1String("\"\"")) + QLatin1Char('"');
}

/// Whether @p value is what the legacy library showed as @p shown, in a column of @p type.
bool isSame(const QVariant& value, const QJsonValue& shown, const QString& type)
{
    if (shown.isNull() || value.isNull())
        return shown.isNull() && value.isNull();
    const QString text =
        shown.isObject() ? QString::fromLatin1(QByteArray::fromHex(shown[QLatin1String("hex")].toString().toLatin1()))
                         : shown.toString();
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    const bool isNumeric = type.toUpper() == QLatin1String("INTEGER") || type.toUpper() == QLatin1String("REAL");
    if (isNumeric && isNumber)
        return value.type() != QVariant::String && qFuzzyCompare(value.toDouble() + 1e9, number + 1e9);
    return value.type() == QVariant::String && value.toString() == text;
}

QStringList sorted(QStringList names)
{
    names.sort();
    return names;
}

} // namespace

class DriverTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { Sqlite2Driver::registerDriver(); }

    void content_data() { addSoundDatabases(); }
    void content()
    {
        QFETCH(QString, name);
        const LegacyCopy legacy(name + QLatin1String(".db"));
        const QJsonObject expected = expectedContent(name);
        Connection connection(legacy);
        QVERIFY2(connection->open(), qPrintable(connection->lastError().text()));
        const QJsonObject tables = expected[QLatin1String("tables")].toObject();
        const QJsonObject views = expected[QLatin1String("views")].toObject();
        QCOMPARE(sorted(connection->tables()), sorted(tables.keys()));
        QCOMPARE(connection->tables(QSql::Views), views.keys());
        for (auto table = tables.begin(); table != tables.end(); ++table) {
            checkColumns(connection, table.key(), table.value()[QLatin1String("columns")].toArray());
            const QString select = QStringLiteral("SELECT rowid, * FROM %1 ORDER BY rowid");
            checkRows(connection, select.arg(quoted(table.key())), table.value()[QLatin1String("data")]);
        }
        for (auto view = views.begin(); view != views.end(); ++view)
            checkRows(connection, QStringLiteral("SELECT * FROM ") + quoted(view.key()), view.value());
        connection->close();
        QVERIFY(legacy.isUnchanged());
    }

    void registersOnce()
    {
        std::vector<std::thread> threads(8);
        for (std::thread& thread : threads)
            thread = std::thread([] { Sqlite2Driver::registerDriver(); });
        for (std::thread& thread : threads)
            thread.join();
        QCOMPARE(QSqlDatabase::drivers().count(QStringLiteral("QSQLITE2")), 1);
    }

    void changesLast()
    {
        const LegacyCopy legacy(QStringLiteral("old.db"));
        const QString count = QStringLiteral("SELECT count(*) FROM ce_owner");
        {
            Connection connection(legacy);
            QVERIFY(connection->open());
            QVERIFY(connection->transaction());
            QSqlQuery insert = QSqlQuery(*connection.operator->());
            QVERIFY(insert.prepare(QStringLiteral("INSERT INTO ce_owner (id) VALUES (:id)")));
            insert.bindValue(QStringLiteral(":id"), QStringLiteral("Zürich 😀"));
            QVERIFY(insert.exec() && insert.lastInsertId().isValid());
            QVERIFY(connection->commit());
            QVERIFY(connection->transaction());
            connection.query(QStringLiteral("DELETE FROM ce_owner"));
            QVERIFY(connection->rollback());
            QCOMPARE(connection.first(count), QStringLiteral("2"));
            connection->close();
            QVERIFY(connection->open());
            QCOMPARE(connection.first(count), QStringLiteral("2"));
        }
        Connection later(legacy);
        QVERIFY(later->open());
        QCOMPARE(later.first(QStringLiteral("SELECT id FROM ce_owner ORDER BY rowid DESC")),
                 QStringLiteral("Zürich 😀"));
        QVERIFY(legacy.isUnchanged());
    }

    void failedOpening()
    {
        const LegacyCopy legacy(QStringLiteral("damaged/cycle_self.db"));
        Connection connection(legacy);
        QVERIFY(!connection->open());
        QVERIFY(!connection->isOpen() && connection->isOpenError());
        QCOMPARE(connection->lastError().type(), QSqlError::ConnectionError);
        QVERIFY(connection->lastError().text().contains(legacy.path()));
        QVERIFY(!QSqlQuery(*connection.operator->()).exec(QStringLiteral("SELECT 1")));
        QVERIFY(connection->tables().isEmpty());

        // The object is not spoiled by that.
        QVERIFY(QFile::remove(legacy.path()));
        QVERIFY(QFile::copy(fixturePath(QStringLiteral("old.db")), legacy.path()));
        QVERIFY(connection->open());
        QVERIFY(!connection->isOpenError() && !connection->lastError().isValid());
    }

    void queriesOutliveTheirConnection()
    {
        const LegacyCopy legacy(QStringLiteral("old.db"));
        auto connection = std::make_unique<Connection>(legacy);
        QSqlQuery early(*connection->operator->());
        QVERIFY((*connection)->open());
        QVERIFY(early.exec(QStringLiteral("SELECT id FROM ce_station")) && early.next());
        QSqlQuery closed = connection->query(QStringLiteral("SELECT id FROM ce_station"));
        QVERIFY(closed.next());
        (*connection)->close();
        QVERIFY(!closed.next());
        QVERIFY((*connection)->open());
        QSqlQuery removed = connection->query(QStringLiteral("SELECT id FROM ce_station"));
        QVERIFY(removed.next());
        connection.reset();
        QVERIFY(!removed.next());
    }

private:
    static void checkRows(Connection& connection, const QString& select, const QJsonValue& data)
    {
        const QJsonArray columns = data[QLatin1String("result_columns")].toArray();
        const QJsonArray rows = data[QLatin1String("rows")].toArray();
        QSqlQuery query = connection.query(select);
        for (const QJsonValue row : rows) {
            QVERIFY(query.next());
            QCOMPARE(query.record().count(), columns.size());
            for (int i = 0; i < columns.size(); ++i)
                QVERIFY2(isSame(query.value(i), row[i], columns[i][1].toString()),
                         qPrintable(select + QLatin1Char(' ') + query.value(i).toString()));
        }
        QVERIFY(!query.next());
    }

    static void checkColumns(Connection& connection, const QString& table, const QJsonArray& columns)
    {
        const QSqlRecord record = connection->record(table);
        const QSqlIndex key = connection->primaryIndex(table);
        QCOMPARE(record.count(), columns.size());
        for (int i = 0; i < columns.size(); ++i) {
            const QString column = columns[i][1].toString();
            QCOMPARE(record.fieldName(i), column);
            QCOMPARE(record.field(i).requiredStatus() == QSqlField::Required, columns[i][3] != QLatin1String("0"));
            QCOMPARE(key.contains(column), columns[i][5] == QLatin1String("1"));
        }
    }
};

DATAACCESS_TEST(DriverTest)

#include "DriverTest.moc"
