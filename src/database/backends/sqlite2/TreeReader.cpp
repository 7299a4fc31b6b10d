#include "database/backends/sqlite2/TreeReader.h"

#include "database/backends/sqlite2/FileImage.h"
#include "database/backends/sqlite2/LegacyFileError.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <utility>

namespace DataAccess::Database::Sqlite2 {

namespace {

constexpr int pageSize = FileImage::pageSize;
constexpr int nodeHeader = 8;
constexpr int cellHeader = 12;
constexpr int smallestCell = 16;
constexpr int localPayload = 236; ///< What stands in the cell itself; the rest is on overflow pages.
constexpr int largestCell = cellHeader + localPayload + 4;
constexpr int overflowPayload = pageSize - 4;
constexpr int keySize = 4;
constexpr int mostCells = (pageSize - nodeHeader) / smallestCell;

void require(bool sound, const char* damage)
{
    if (!sound)
        throw LegacyFileError(QStringLiteral("it is damaged: %1").arg(QLatin1String(damage)));
}

} // namespace

/// A page of a tree, and how far the walk has come on it.
struct TreeReader::Node
{
    const uchar* page = nullptr;
    std::array<quint16, mostCells> cells = {}; ///< Their offsets, in the order of their keys.
    int cellCount = 0;
    int step = 0; ///< Children at even steps, cells at odd ones.
};

struct TreeReader::Cell
{
    const uchar* at;
    quint32 keySize;
    quint32 dataSize;

    quint32 payloadSize() const { return keySize + dataSize; }
    int size() const
    {
        if (payloadSize() > localPayload)
            return largestCell;
        return std::max(smallestCell, cellHeader + static_cast<int>((payloadSize() + 3) & ~3u));
    }
};

TreeReader::TreeReader(FileImage& image)
    : m_image(image)
    , m_used(size_t(image.pageCount()) + 1)
{}

const uchar* TreeReader::claimPage(quint32 number)
{
    const uchar* const page = m_image.treePage(number);
    require(!m_used[number], "a page belongs to two places");
    m_used[number] = true;
    return page;
}

TreeReader::Cell TreeReader::cell(const uchar* at) const
{
    return {at, m_image.u16(at + 4) | quint32(at[8]) << 16, m_image.u16(at + 10) | quint32(at[9]) << 16};
}

TreeReader::Node TreeReader::openNode(quint32 number, bool isRoot)
{
    Node node;
    node.page = claimPage(number);
    const bool isLeaf = m_image.u32(node.page) == 0;

    // Cells and gaps fill the page. A chain that turns back on itself exceeds the page, too.
    int used = nodeHeader;
    for (int offset = m_image.u16(node.page + 4); offset != 0; offset = m_image.u16(node.page + offset + 6)) {
        require(offset >= nodeHeader && offset <= pageSize - smallestCell && offset % 4 == 0, "a cell is misplaced");
        const uchar* const at = node.page + offset;
        const int size = cell(at).size();
        used += size;
        require(offset + size <= pageSize && used <= pageSize, "the cells exceed their page");
        require((m_image.u32(at) == 0) == isLeaf, "some children of a page are missing");
        node.cells[static_cast<size_t>(node.cellCount++)] = static_cast<quint16>(offset);
    }
    require(node.cellCount > 0 || isRoot, "a page has no entries");

    int lastGap = 0;
    for (int gap = m_image.u16(node.page + 6); gap != 0; gap = m_image.u16(node.page + gap + 2)) {
        require(gap >= nodeHeader && gap <= pageSize - 4 && gap > lastGap, "a gap is misplaced");
        used += m_image.u16(node.page + gap);
        lastGap = gap;
    }
    require(used == pageSize, "a page is not filled exactly");
    return node;
}

quint32 TreeReader::child(const Node& node, int index) const
{
    return m_image.u32(index < node.cellCount ? node.page + node.cells[static_cast<size_t>(index)] : node.page);
}

QByteArray TreeReader::record(const Cell& cell)
{
    constexpr int localData = localPayload - keySize;
    const auto bytes = [](const uchar* at) { return reinterpret_cast<const char*>(at); };
    const char* const local = bytes(cell.at + cellHeader + keySize);
    const auto size = static_cast<int>(cell.dataSize);
    if (size <= localData)
        return QByteArray::fromRawData(local, size);

    // Before memory is asked for: the file must be able to hold so much.
    const quint32 pages = static_cast<quint32>(size - localData + overflowPayload - 1) / overflowPayload;
    require(pages < m_image.pageCount(), "an entry is larger than the file");
    QByteArray assembled(size, Qt::Uninitialized);
    char* to = std::copy_n(local, localData, assembled.data());
    const char* const end = assembled.constData() + size;
    quint32 next = m_image.u32(cell.at + cellHeader + localPayload);
    while (to < end) {
        const uchar* const page = claimPage(next);
        to = std::copy_n(bytes(page + 4), std::min<qptrdiff>(end - to, overflowPayload), to);
        const quint32 copied = std::exchange(next, m_image.u32(page));
        m_image.release(copied);
    }
    require(next == 0, "an entry has more overflow pages than it needs");
    return assembled;
}

void TreeReader::readTable(quint32 root, const RowHandler& handler)
{
    // Keys are row ids, shifted so that they compare as unsigned numbers.
    constexpr qint64 keyOfRowZero = qint64(1) << 31;
    qint64 lastKey = -1;
    std::vector<Node> path = {openNode(root, true)};
    while (!path.empty()) {
        Node& node = path.back();
        const int step = node.step++;
        if (step > 2 * node.cellCount) {
            path.pop_back();
        } else if (step % 2 == 0) {
            const quint32 number = child(node, step / 2);
            if (number != 0)
                path.push_back(openNode(number, false));
        } else {
            const Cell entry = cell(node.page + node.cells[static_cast<size_t>(step / 2)]);
            require(entry.keySize == keySize, "an entry's key is no row id");
            const qint64 key = qFromBigEndian<quint32>(entry.at + cellHeader);
            require(key > lastKey, "row ids are out of order");
            lastKey = key;
            handler(key - keyOfRowZero, record(entry));
        }
    }
}

} // namespace DataAccess::Database::Sqlite2
