#include "Fixtures.h"
#include "database/backends/sqlite2/FileImage.h"
#include "database/backends/sqlite2/LegacyFile.h"
#include "database/backends/sqlite2/LegacyFileError.h"
#include "support/TestMain.h"

#include <QBuffer>
#include <QTest>
#include <QtEndian>

using namespace DataAccess::Database::Sqlite2;
using namespace TestSupport;

namespace {

/// All tables and rows that the reader finds in a database, a line each.
QByteArray contentOf(const QByteArray& bytes, const QByteArray& journalBytes)
{
    QBuffer file, journal;
    file.setData(bytes);
    journal.setData(journalBytes);
    file.open(QIODevice::ReadOnly);
    journal.open(QIODevice::ReadOnly);
    LegacyFile legacy(FileImage(file, journalBytes.isNull() ? nullptr : &journal));
    QByteArray lines;
    for (const LegacyFile::Table& table : legacy.tables()) {
        lines += table.definition.name + '\n';
        legacy.readRows(table, [&lines](qint64 id, const QVector<QByteArray>& values) {
            lines += QByteArray::number(id) + ' ' + values.toList().join('|') + '\n';
        });
    }
    return lines;
}

/// The journal @p newer as an older library would have written it, without check numbers.
QByteArray olderJournal(const QByteArray& newer, char kind, bool bigEndian)
{
    constexpr int headerSize = 20;
    constexpr int entrySize = 4 + 1024 + 4;
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

/// latin1.db with one row in place of its own: @p name, on overflow pages behind all others.
QByteArray withRow(const QByteArray& name)
{
    const auto number = [](int value, int width) {
        QByteArray bytes(4, '\0');
        qToLittleEndian(value, bytes.data());
        return bytes.left(width);
    };
    constexpr int local = 236; // What stands in the cell itself.
    constexpr int onPage = 1020;
    const QByteArray text = name + '\0';
    const QByteArray record = number(9, 3) + number(9, 3) + number(9 + text.size(), 3) + text;
    const QByteArray payload = QByteArray::fromHex("80000001") + record;
    const QByteArray node = number(0, 4) + number(8, 2) + number(260, 2);
    const QByteArray cell = number(0, 4) + number(4, 2) + number(0, 3) + number(record.size() >> 16, 1) +
                            number(record.size(), 2) + payload.left(local) + number(4, 4);
    QByteArray file = fileBytes(fixturePath(QStringLiteral("latin1.db"))).left(2048) + node + cell + number(764, 4);
    file.append(3072 - file.size(), '\0');
    for (int at = local, page = 4; at < payload.size(); at += onPage, ++page) {
        file += number(at + onPage < payload.size() ? page + 1 : 0, 4) + payload.mid(at, onPage);
        file.append(page * 1024 - file.size(), '\0');
    }
    return file;
}

} // namespace

/// What no file of the fixtures shows; their content is compared where it arrives, in the driver.
class ReaderTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void olderJournals_data()
    {
        QTest::addColumn<QByteArray>("journal");
        QTest::newRow("first kind") << olderJournal(m_journal, '\xd4', false);
        QTest::newRow("second kind") << olderJournal(m_journal, '\xd5', true);
        // The writer died while it wrote an entry, before it touched the page that the entry is for.
        QTest::newRow("second kind, cut off") << olderJournal(m_journal, '\xd5', true) + QByteArray(700, 'x');
    }

    void olderJournals()
    {
        QFETCH(QByteArray, journal);
        const QByteArray content = contentOf(m_hot, m_journal);
        QVERIFY(content.size() > 1000);
        QCOMPARE(contentOf(m_hot, journal), content);
    }

    void damagedJournals_data()
    {
        QTest::addColumn<QByteArray>("journal");
        QTest::newRow("unknown kind") << QByteArray(m_journal).replace(7, 1, "\xd7");
        QTest::newRow("other file") << QByteArray(1000, 'x');
        QTest::newRow("cut off") << m_journal.left(m_journal.size() - 1);
        QTest::newRow("four billion pages") << QByteArray(m_journal).replace(16, 4, "\xff\xff\xff\xff");
        QTest::newRow("four billion entries") << QByteArray(m_journal).replace(8, 4, "\xff\xff\xff\xfe");
    }

    void damagedJournals()
    {
        QFETCH(QByteArray, journal);
        QVERIFY_EXCEPTION_THROWN(contentOf(m_hot, journal), LegacyFileError);
    }

    void everyTruncation()
    {
        const QByteArray whole = fileBytes(fixturePath(QStringLiteral("latin1.db")));
        for (int size = 1; size < whole.size(); ++size)
            QVERIFY_EXCEPTION_THROWN(contentOf(whole.left(size), QByteArray()), LegacyFileError);
    }

    /// Their pages are given back while they are read.
    void largeValues()
    {
        QByteArray name;
        while (name.size() < 1000000)
            name += QByteArray::number(name.size()) + ' ';
        const QByteArray file = withRow(name);
        QCOMPARE(contentOf(file, QByteArray()), "t\n1 1|" + name + '\n');
        // The chain of overflow pages turns back to one that was given back.
        QByteArray loop = file;
        loop.replace(899 * 1024, 4, file.mid(299 * 1024, 4));
        QVERIFY_EXCEPTION_THROWN(contentOf(loop, QByteArray()), LegacyFileError);
    }

    /// Characters that become one, two and three bytes lie at all places of a page.
    void largeValueOfWindows()
    {
        QByteArray name, expected;
        while (name.size() < 3000000) {
            const QByteArray number = QByteArray::number(name.size());
            name += number + "\x80\xfc ";
            expected += number + "\xe2\x82\xac\xc3\xbc ";
        }
        QCOMPARE(contentOf(withRow(name), QByteArray()), "t\n1 1|" + expected + '\n');
    }

private:
    const QByteArray m_hot = fileBytes(fixturePath(QStringLiteral("hot.db")));
    const QByteArray m_journal = fileBytes(fixturePath(QStringLiteral("hot.db-journal")));
};

DATAACCESS_TEST(ReaderTest)

#include "ReaderTest.moc"
