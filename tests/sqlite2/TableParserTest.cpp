#include "database/backends/sqlite2/TableParser.h"

#include "database/backends/sqlite2/LegacyFileError.h"
#include "support/TestMain.h"

#include <QTest>

using namespace DataAccess::Database::Sqlite2;

class TableParserTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void translation_data()
    {
        QTest::addColumn<QByteArray>("legacy");
        QTest::addColumn<QByteArray>("created");
        QTest::addColumn<int>("rowIdColumn");
        const auto row = [](const char* name, const char* legacy, const char* created, int rowIdColumn = -1) {
            QTest::newRow(name) << QByteArray("CREATE TABLE t(") + legacy + ')'
                                << QByteArray("CREATE TABLE \"t\" ( ") + created + " )" << rowIdColumn;
        };
        row("types", "a, b INT, c real, d NUMERIC(10,2), e integer unsigned, f TEXT INTEGER, g DOUBLE PRECISION",
            "\"a\" TEXT, \"b\" TEXT, \"c\" REAL, \"d\" TEXT, \"e\" INTEGER, \"f\" TEXT, \"g\" TEXT");
        row("descending key", "a INTEGER PRIMARY KEY DESC ON CONFLICT REPLACE",
            "\"a\" INTEGER PRIMARY KEY ON CONFLICT REPLACE", 0);
        row("key as clause", "x, 'a b' integer, PRIMARY KEY([A B] ASC)",
            "\"x\" TEXT, \"a b\" INTEGER, PRIMARY KEY(\"A B\")", 1);
        row("no row id", "a INTEGER(4) PRIMARY KEY", "\"a\" TEXT PRIMARY KEY");
        row("no row id, quoted type", "a \"INTEGER\" PRIMARY KEY", "\"a\" TEXT PRIMARY KEY");
        row("no row id, two columns", "a INTEGER, b INTEGER, PRIMARY KEY(a,b)",
            "\"a\" INTEGER, \"b\" INTEGER, PRIMARY KEY(\"a\",\"b\")");
        row("numbers by default", "a DEFAULT -1.5e-7, b DEFAULT + 007, c DEFAULT .5 NOT NULL",
            "\"a\" TEXT DEFAULT '-1.5e-7', \"b\" TEXT DEFAULT '007', \"c\" TEXT DEFAULT '.5' NOT NULL");
        row("words by default", "a DEFAULT TRUE, b DEFAULT NULL, c DEFAULT 'it''s', d DEFAULT current_time",
            "\"a\" TEXT DEFAULT 'TRUE', \"b\" TEXT DEFAULT NULL, \"c\" TEXT DEFAULT 'it''s', "
            "\"d\" TEXT DEFAULT current_time");
        row("without checks", "a CHECK( (a > ')') ) ON CONFLICT FAIL NOT NULL, CHECK a > 1 UNIQUE(a), CHECK(a)",
            "\"a\" TEXT NOT NULL, UNIQUE(\"a\")");
        row("without collations", "a TEXT COLLATE text UNIQUE", "\"a\" TEXT UNIQUE");
        row("clauses without comma", "a, CONSTRAINT c, UNIQUE(a) CONSTRAINT d PRIMARY KEY(a)",
            "\"a\" TEXT, UNIQUE(\"a\"), PRIMARY KEY(\"a\")");
        row("references",
            "a REFERENCES p ON INSERT RESTRICT ON DELETE SET NULL, FOREIGN KEY(a) REFERENCES p(x,y) MATCH full "
            "ON UPDATE CASCADE NOT DEFERRABLE INITIALLY DEFERRED",
            "\"a\" TEXT REFERENCES \"p\" ON DELETE SET NULL, FOREIGN KEY(\"a\") REFERENCES \"p\"(\"x\",\"y\") "
            "ON UPDATE CASCADE NOT DEFERRABLE INITIALLY DEFERRED");
        row("names",
            "\"say \"\"hi\"\"\", [a \"b] TEXT, M\xfcll, Gr\xc3\xb6\xc3\x9f"
            "e, key, alter",
            "\"say \"\"hi\"\"\" TEXT, \"a \"\"b\" TEXT, \"M\xc3\xbcll\" TEXT, \"Gr\xc3\xb6\xc3\x9f"
            "e\" TEXT, \"key\" TEXT, \"alter\" TEXT");
        row("comments", "a -- not b\n/* nor , c */, \"--d\" TEXT", "\"a\" TEXT, \"--d\" TEXT");
    }

    void translation()
    {
        QFETCH(QByteArray, legacy);
        QFETCH(int, rowIdColumn);
        const LegacyTable table = TableParser::parse(legacy);
        QTEST(table.createStatement(), "created");
        QCOMPARE(table.rowIdColumn, rowIdColumn);
    }

    void refusal_data()
    {
        QTest::addColumn<QByteArray>("sql");
        for (const char* const sql : {"",
                                      "CREATE",
                                      "DROP TABLE t",
                                      "CREATE TABLE t",
                                      "CREATE TABLE t(",
                                      "CREATE TABLE t(a",
                                      "CREATE TABLE t()",
                                      "CREATE TABLE t(a,)",
                                      "CREATE TABLE t(a) x",
                                      "CREATE TABLE t(a); DROP TABLE u",
                                      "CREATE TABLE t(a 'b)",
                                      "CREATE TABLE t(a CHECK((a))",
                                      "CREATE TABLE t(a CHECK",
                                      "CREATE TABLE t AS SELECT 1",
                                      "CREATE TABLE t(PRIMARY KEY(a))",
                                      "CREATE TABLE t(a, PRIMARY KEY(b))",
                                      "CREATE TABLE t(a DEFAULT (1))",
                                      "CREATE TABLE t(a PRIMARY KEY, b PRIMARY KEY)",
                                      "CREATE TABLE t(a NUMERIC(1)",
                                      "CREATE TABLE t(a NOT)",
                                      "CREATE TABLE t(a UNIQUE ON CONFLICT PANIC)",
                                      "CREATE TABLE t(a REFERENCES p ON DELETE SET)"})
            QTest::newRow(sql) << QByteArray(sql);
    }

    void refusal()
    {
        QFETCH(QByteArray, sql);
        QVERIFY_EXCEPTION_THROWN(TableParser::parse(sql), LegacyFileError);
    }
};

DATAACCESS_TEST(TableParserTest)

#include "TableParserTest.moc"
