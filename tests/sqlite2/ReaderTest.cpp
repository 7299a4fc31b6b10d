#include "Fixtures.h"
#include "database/sqlite2/FileImage.h"
#include "database/sqlite2/LegacyFile.h"
#include "database/sqlite2/LegacyFileError.h"
#include "support/TestMain.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QTest>
#include <QtEndian>

#include <memory>

using namespace DataAccess::Database::Sqlite2;
using namespace TestSupport;

namespace {

QByteArray journalOf(const QString& databasePath)
{
    const QString path = databasePath + QLatin1String("-journal");
    return QFile::exists(path) ? fileBytes(path) : QByteArray();
}

/// A value as the fixtures write it: null, a string, or the bytes in hexadecimal when they are not UTF-8.
QJsonValue toJson(const QByteArray& value)
{
    if (value.isNull())
        return QJsonValue::Null;
    const QString text = QString::fromUtf8(value);
    if (text.toUtf8() == value)
        return text;
    return QJsonObject{{QStringLiteral("hex"), QString::fromLatin1(value.toHex())}};
}

QJsonArray rowsOf(LegacyFile& file, const LegacyFile::Table& table)
{
    QJsonArray rows;
    file.readRows(table, [&rows](qint64 id, const QVector<QByteArray>& values) {
        QJsonArray row = {QString::number(id)};
        for (const QByteArray& value : values)
            row += toJson(value);
        rows += row;
    });
    return rows;
}

QJsonArray columnsOf(const TableDefinition& table)
{
    QJsonArray columns;
    for (const ColumnDefinition& column : table.columns) {
        const QByteArray type = column.type.isEmpty() ? QByteArrayLiteral("numeric") : column.type;
        columns += QJsonArray{QString::fromUtf8(column.name), QString::fromUtf8(type)};
    }
    return columns;
}

/// Everything the reader finds in a database, in the shape of expectedTables().
QJsonObject readTables(const QByteArray& bytes, const QByteArray& journalBytes)
{
    QBuffer file, journal;
    file.setData(bytes);
    journal.setData(journalBytes);
    file.open(QIODevice::ReadOnly);
    journal.open(QIODevice::ReadOnly);
    const FileImage image(file, journalBytes.isNull() ? nullptr : &journal);
    LegacyFile legacy(image);
    QJsonObject tables;
    for (const LegacyFile::Table& table : legacy.tables())
        tables.insert(QString::fromUtf8(table.definition.name),
                      QJsonObject{{QStringLiteral("columns"), columnsOf(table.definition)},
                                  {QStringLiteral("rows"), rowsOf(legacy, table)}});
    return tables;
}

QJsonObject expectedTables(const QString& name)
{
    QJsonObject result;
    const QJsonObject tables = expectedContent(name).value(QLatin1String("tables")).toObject();
    for (auto table = tables.begin(); table != tables.end(); ++table) {
        QJsonArray columns;
        const QJsonArray described = table.value()[QLatin1String("columns")].toArray();
        for (const QJsonValue column : described)
            columns += QJsonArray{column[1], column[2]};
        result.insert(table.key(), QJsonObject{{QStringLiteral("columns"), columns},
                                               {QStringLiteral("rows"),
                                                table.value()[QLatin1String("data")][QLatin1String("rows")]}});
    }
    return result;
}

/// The journal of hot.db as an older library would have written it, without check numbers.
QByteArray olderJournal(char kind, bool bigEndian)
{
    constexpr int headerSize = 20;
    constexpr int entrySize = 4 + 1024 + 4;
    const QByteArray newer = journalOf(fixturePath(QStringLiteral("hot.db")));
    const auto number = [&](int offset) {
        const auto value = qFromBigEndian<quint32>(newer.constData() + offset);
        QByteArray bytes(4, '\0');
        bigEndian ? qToBigEndian(value, bytes.data()) : qToLittleEndian(value, bytes.data());
        return bytes;
    };
    QByteArray older = newer.left(7) + kind + number(16);
    for (int at = headerSize; at + entrySize <= newer.size(); at += entrySize)
        older += number(at) + newer.mid(at + 4, 1024);
    return older;
}

} // namespace

class ReaderTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void content_data() { addSoundDatabases(); }
    void content();
    void olderJournals_data();
    void olderJournals();
    void damagedJournals_data();
    void damagedJournals();
    void damagedFiles_data();
    void damagedFiles();
    void everyTruncation();
};

void ReaderTest::content()
{
    QFETCH(QString, name);
    const QString path = fixturePath(name + QLatin1String(".db"));
    const QJsonObject tables = readTables(fileBytes(path), journalOf(path));
    const QJsonObject expected = expectedTables(name);
    QCOMPARE(tables.keys(), expected.keys());
    for (const QString& table : expected.keys())
        QCOMPARE(QJsonDocument(tables[table].toObject()).toJson(), QJsonDocument(expected[table].toObject()).toJson());
}

void ReaderTest::olderJournals_data()
{
    QTest::addColumn<QByteArray>("journal");
    QTest::newRow("first kind") << olderJournal('\xd4', false);
    QTest::newRow("second kind") << olderJournal('\xd5', true);
    // The writer died while it wrote an entry, before it touched the page that the entry is for.
    QTest::newRow("second kind, cut off") << olderJournal('\xd5', true) + QByteArray(700, 'x');
}

void ReaderTest::olderJournals()
{
    QFETCH(QByteArray, journal);
    QCOMPARE(readTables(fileBytes(fixturePath(QStringLiteral("hot.db"))), journal),
             expectedTables(QStringLiteral("hot")));
}

void ReaderTest::damagedJournals_data()
{
    QTest::addColumn<QByteArray>("journal");
    const QByteArray sound = journalOf(fixturePath(QStringLiteral("hot.db")));
    QTest::newRow("unknown kind") << QByteArray(sound).replace(7, 1, "\xd7");
    QTest::newRow("other file") << QByteArray(1000, 'x');
    QTest::newRow("cut off") << sound.left(sound.size() - 1);
    QTest::newRow("four billion pages") << QByteArray(sound).replace(16, 4, "\xff\xff\xff\xff");
    QTest::newRow("four billion entries") << QByteArray(sound).replace(8, 4, "\xff\xff\xff\xfe");
}

void ReaderTest::damagedJournals()
{
    QFETCH(QByteArray, journal);
    QVERIFY_EXCEPTION_THROWN(readTables(fileBytes(fixturePath(QStringLiteral("hot.db"))), journal), LegacyFileError);
}

void ReaderTest::damagedFiles_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("place");
    const QJsonArray all =
        QJsonDocument::fromJson(fileBytes(fixturePath(QStringLiteral("damaged/expected.json")))).array();
    QVERIFY(all.size() >= 17);
    for (const QJsonValue one : all) {
        const QString file = one[QLatin1String("file")].toString();
        QTest::newRow(qPrintable(file)) << file << one[QLatin1String("error_expected_at")].toString();
    }
}

void ReaderTest::damagedFiles()
{
    QFETCH(QString, file);
    QFETCH(QString, place);
    const QString path = fixturePath(QStringLiteral("damaged/") + file);
    const QByteArray bytes = fileBytes(path);
    const QByteArray undo = journalOf(path);
    QElapsedTimer timer;
    timer.start();
    QBuffer device, journal;
    device.setData(bytes);
    journal.setData(undo);
    device.open(QIODevice::ReadOnly);
    journal.open(QIODevice::ReadOnly);

    QStringList refused;
    try {
        const FileImage image(device, undo.isNull() ? nullptr : &journal);
        LegacyFile legacy(image);
        for (const LegacyFile::Table& table : legacy.tables()) {
            try {
                rowsOf(legacy, table);
            } catch (const LegacyFileError&) {
                refused += QStringLiteral("rows of ") + QString::fromUtf8(table.definition.name);
            }
        }
    } catch (const LegacyFileError&) {
        refused += QStringLiteral("open");
    }
    QVERIFY(timer.elapsed() < 1000);
    // The two halves of a change without the journal between them may happen to be sound.
    if (place != QLatin1String("mixed"))
        QVERIFY2(refused.contains(place), qPrintable(refused.join(QLatin1String(", "))));
}

void ReaderTest::everyTruncation()
{
    const QByteArray whole = fileBytes(fixturePath(QStringLiteral("latin1.db")));
    for (int size = 1; size < whole.size(); ++size)
        QVERIFY_EXCEPTION_THROWN(readTables(whole.left(size), QByteArray()), LegacyFileError);
}

DATAACCESS_TEST(ReaderTest)

#include "ReaderTest.moc"
