#include "database/sqlite2/HotJournal.h"

#include "database/sqlite2/FileImage.h"
#include "database/sqlite2/LegacyFileError.h"

#include <QByteArray>
#include <QIODevice>
#include <QtEndian>

namespace DataAccess::Database::Sqlite2 {

namespace {

constexpr int pageSize = FilePages::pageSize;
const QByteArray signature = QByteArrayLiteral("\xd9\xd5\x05\xf9\x20\xa1\x63");

/// What the header tells.
struct Layout
{
    bool bigEndian = true;
    bool checked = false; ///< Each entry ends with a check number.
    int headerSize = 12;
    qint64 entryCount = 0;
    quint32 checkSeed = 0;
    quint32 oldPageCount = 0;

    int entrySize() const { return 4 + pageSize + (checked ? 4 : 0); }
    quint32 number(const QByteArray& bytes, int offset) const
    {
        const char* const at = bytes.constData() + offset;
        return bigEndian ? qFromBigEndian<quint32>(at) : qFromLittleEndian<quint32>(at);
    }
};

/// False when the header is not complete.
bool readHeader(Layout& layout, const FilePages& file, QIODevice& journal)
{
    constexpr int plainHeader = 12;
    constexpr int checkedHeader = 20;
    constexpr quint32 countUnknown = 0xffffffff;

    const QByteArray header = journal.read(checkedHeader);
    if (header.size() < plainHeader)
        return false;
    const char kind = header.at(signature.size());
    if (!header.startsWith(signature) || kind < '\xd4' || kind > '\xd6')
        throw LegacyFileError(QStringLiteral("its journal is of an unknown kind"));
    layout.checked = kind == '\xd6';
    // The oldest kind is in the byte order of its writer, which is that of the database.
    layout.bigEndian = kind != '\xd4' || FileImage::hasBigEndianMark(file);
    layout.headerSize = layout.checked ? checkedHeader : plainHeader;
    if (header.size() < layout.headerSize)
        return false;
    layout.entryCount = (journal.size() - layout.headerSize) / layout.entrySize();
    if (layout.checked) {
        const quint32 count = layout.number(header, 8);
        if (count != countUnknown)
            layout.entryCount = count;
        layout.checkSeed = layout.number(header, 12);
    }
    layout.oldPageCount = layout.number(header, layout.headerSize - 4);
    return true;
}

} // namespace

void HotJournal::undo(FilePages& file, QIODevice& journal)
{
    Layout layout;
    if (!readHeader(layout, file, journal))
        return;
    const auto entriesInFile = static_cast<size_t>(journal.size() / layout.entrySize());
    if (layout.oldPageCount > file.count() + entriesInFile)
        throw LegacyFileError(QStringLiteral("its journal tells of more pages than there are"));
    if (!journal.seek(layout.headerSize))
        throw LegacyFileError(QStringLiteral("its journal can't be read: %1").arg(journal.errorString()));

    file.resize(layout.oldPageCount);
    for (qint64 i = 0; i < layout.entryCount; ++i) {
        const QByteArray entry = journal.read(layout.entrySize());
        if (entry.size() < layout.entrySize())
            throw LegacyFileError(QStringLiteral("its journal is cut off"));
        const quint32 page = layout.number(entry, 0);
        // The writer died while it wrote this entry, before it touched the page.
        if (page == 0 || (layout.checked && layout.number(entry, 4 + pageSize) != layout.checkSeed + page))
            break;
        // A page that the change had added is gone already.
        if (page <= layout.oldPageCount)
            file.overwrite(page, entry.constData() + 4);
    }
}

} // namespace DataAccess::Database::Sqlite2
