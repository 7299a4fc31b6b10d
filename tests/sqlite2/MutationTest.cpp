#include "Fixtures.h"
#include "FuzzTarget.h"
#include "database/backends/sqlite2/CopyWriter.h"
#include "database/backends/sqlite2/WorkingCopy.h"
#include "support/TestMain.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTest>

#include <random>
#include <vector>

using namespace DataAccess::Database::Sqlite2;
using namespace TestSupport;

namespace {

constexpr int pageSize = 1024;
constexpr int writtenOneIn = 25; ///< Writing takes far longer than reading.

/// Makes random changes of the kinds that bad disks, bad copies and bad people make. The same ones in every run.
class Mutator
{
public:
    void mutate(QByteArray& bytes)
    {
        const int changes = below(6) + 1;
        for (int i = 0; i < changes && !bytes.isEmpty(); ++i)
            change(bytes);
    }
    int below(int limit) { return static_cast<int>(m_random() % static_cast<unsigned>(limit)); }

private:
    void change(QByteArray& bytes)
    {
        const int at = below(bytes.size());
        const int page = at / pageSize * pageSize;
        switch (below(8)) {
        case 0:
            bytes[at] = static_cast<char>(m_random());
            break;
        case 1:
            bytes[at] = static_cast<char>(bytes.at(at) ^ 1 << below(8));
            break;
        case 2: // A page number or an offset, in the header of a page or of a cell.
            put(bytes, page + below(6) * 2, below(bytes.size() / pageSize + 3));
            break;
        case 3:
            put(bytes, at & ~3, below(bytes.size() / pageSize + 3));
            break;
        case 4:
            put(bytes, at & ~1, below(2) == 0 ? 0xffff : 0);
            break;
        case 5:
            bytes.replace(page, pageSize, bytes.mid(below(bytes.size()) / pageSize * pageSize, pageSize));
            break;
        case 6:
            bytes.replace(page, pageSize, QByteArray(pageSize, '\0'));
            break;
        default:
            if (below(8) == 0)
                bytes.truncate(at);
            break;
        }
    }
    static void put(QByteArray& bytes, int at, int number)
    {
        if (at + 2 <= bytes.size())
            bytes.replace(at, 2, QByteArray(1, static_cast<char>(number)) + static_cast<char>(number >> 8));
    }

    std::mt19937 m_random{20140305};
};

} // namespace

class MutationTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void tenThousandMutations()
    {
        std::vector<QByteArray> seeds;
        for (const QString& folder : {QString(), QStringLiteral("damaged")}) {
            const QFileInfoList files = QDir(fixturePath(folder)).entryInfoList({QStringLiteral("*.db")});
            for (const QFileInfo& file : files) {
                const QString journal = file.filePath() + QLatin1String("-journal");
                seeds.push_back(fileBytes(file.filePath()) +
                                (QFile::exists(journal) ? fileBytes(journal) : QByteArray()));
            }
        }
        Mutator mutator;
        qint64 slowest = 0;
        qint64 rows = 0;
        int refused = 0;
        for (int i = 0; i < 10000; ++i) {
            QByteArray bytes = seeds[static_cast<size_t>(mutator.below(static_cast<int>(seeds.size())))];
            mutator.mutate(bytes);
            PrivateConnection connection;
            connection.setDatabaseName(QStringLiteral(":memory:"));
            QVERIFY(connection.open());
            CopyWriter writer(connection);
            QElapsedTimer timer;
            timer.start();
            const qint64 found = readLegacyInput(bytes, i % writtenOneIn == 0 ? &writer : nullptr);
            slowest = std::max(slowest, timer.elapsed());
            rows += std::max<qint64>(found, 0);
            refused += found < 0 ? 1 : 0;
        }
        QVERIFY2(slowest < 1000, qPrintable(QStringLiteral("%1 ms").arg(slowest)));
        // Neither all damage nor none.
        QVERIFY2(refused > 1000 && refused < 9000 && rows > 100000,
                 qPrintable(QStringLiteral("%1 %2").arg(refused).arg(rows)));
    }
};

DATAACCESS_TEST(MutationTest)

#include "MutationTest.moc"
