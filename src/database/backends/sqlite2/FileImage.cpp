#include "database/backends/sqlite2/FileImage.h"

#include "database/backends/sqlite2/LegacyFileError.h"

#include <QByteArray>
#include <QIODevice>
#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <sys/mman.h>

namespace DataAccess::Database::Sqlite2 {

void FilePages::Unmap::operator()(uchar* bytes) const
{
    ::munmap(bytes, blockSize);
}

FilePages::Block::Block()
{
    void* const memory = ::mmap(nullptr, blockSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        throw std::bad_alloc();
    bytes.reset(static_cast<uchar*>(memory));
}

FilePages::FilePages(QIODevice& file)
{
    const qint64 size = file.size();
    if (size / pageSize > std::numeric_limits<qint32>::max())
        throw LegacyFileError(QStringLiteral("it is too large for a SQLite 2 database"));
    setSize(size);
    qint64 done = 0;
    while (done < size) {
        uchar* const block = m_blocks[static_cast<size_t>(done / blockSize)].bytes.get();
        const qint64 offset = done % blockSize;
        const qint64 count =
            file.read(reinterpret_cast<char*>(block + offset), std::min(blockSize - offset, size - done));
        if (count <= 0)
            throw LegacyFileError(QStringLiteral("it can't be read to its end: %1").arg(file.errorString()));
        done += count;
    }
}

void FilePages::setSize(qint64 size)
{
    m_blocks.resize(static_cast<size_t>((size + blockSize - 1) / blockSize));
    m_size = size;
}

uchar* FilePages::at(quint32 number) const
{
    const quint32 index = number - 1;
    uchar* const block = m_blocks[index / pagesPerBlock].bytes.get();
    return block == nullptr ? nullptr : block + ptrdiff_t(index % pagesPerBlock) * pageSize;
}

const uchar* FilePages::page(quint32 number) const
{
    return at(number);
}

void FilePages::overwrite(quint32 number, const char* bytes)
{
    std::copy_n(bytes, pageSize, at(number));
}

void FilePages::resize(quint32 count)
{
    setSize(qint64(count) * pageSize);
}

void FilePages::release(quint32 number)
{
    Block& block = m_blocks[(number - 1) / pagesPerBlock];
    if (--block.needed == 0)
        block.bytes.reset();
}

namespace {

// Both with the zero byte at the end.
constexpr char signature[] = "** This file contains an SQLite 2.1 database **";
constexpr char successorSignature[] = "SQLite format 3";
constexpr quint32 byteOrderMark = 0xdae37528;
constexpr size_t byteOrderOffset = sizeof signature;
constexpr size_t formatOffset = 64;
constexpr quint32 newestFormat = 4;

template <size_t Size>
bool beginsWith(const FilePages& file, const char (&text)[Size])
{
    return file.size() >= qint64(Size) && std::memcmp(file.page(1), text, Size) == 0;
}

/// Whether @p file begins like one that a big-endian machine made.
bool hasBigEndianMark(const FilePages& file)
{
    return file.count() > 0 && qFromBigEndian<quint32>(file.page(1) + byteOrderOffset) == byteOrderMark;
}

const QByteArray journalSignature = QByteArrayLiteral("\xd9\xd5\x05\xf9\x20\xa1\x63");

/// What the header of a journal tells.
struct JournalLayout
{
    bool bigEndian = true;
    bool checked = false; ///< Each entry ends with a check number.
    int headerSize = 12;
    qint64 entryCount = 0;
    quint32 checkSeed = 0;
    quint32 oldPageCount = 0;

    int entrySize() const { return 4 + FilePages::pageSize + (checked ? 4 : 0); }
    quint32 number(const QByteArray& bytes, int offset) const
    {
        const char* const at = bytes.constData() + offset;
        return bigEndian ? qFromBigEndian<quint32>(at) : qFromLittleEndian<quint32>(at);
    }
};

/// False when the header is not complete.
bool readJournalHeader(JournalLayout& layout, const FilePages& file, QIODevice& journal)
{
    constexpr int plainHeader = 12;
    constexpr int checkedHeader = 20;
    constexpr quint32 countUnknown = 0xffffffff;

    const QByteArray header = journal.read(checkedHeader);
    if (header.size() < plainHeader)
        return false;
    const char kind = header.at(journalSignature.size());
    if (!header.startsWith(journalSignature) || kind < '\xd4' || kind > '\xd6')
        throw LegacyFileError(QStringLiteral("its journal is of an unknown kind"));
    layout.checked = kind == '\xd6';
    // The oldest kind is in the byte order of its writer, which is that of the database.
    layout.bigEndian = kind != '\xd4' || hasBigEndianMark(file);
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

/**
 * Undoes, in @p file, the half-made change that the journal at the beginning of @p journal belongs to: a writer left it
 * behind when it died, with the old content of the pages that it changed. A journal without a complete header changes
 * nothing: its writer had not changed the file yet. Throws LegacyFileError on a damaged one.
 */
void undoChange(FilePages& file, QIODevice& journal)
{
    JournalLayout layout;
    if (!readJournalHeader(layout, file, journal))
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
        if (page == 0 || (layout.checked && layout.number(entry, 4 + FilePages::pageSize) != layout.checkSeed + page))
            break;
        // A page that the change had added is gone already.
        if (page <= layout.oldPageCount)
            file.overwrite(page, entry.constData() + 4);
    }
}

} // namespace

FileImage::FileImage(QIODevice& file, QIODevice* journal)
    : m_pages(file)
{
    if (journal != nullptr)
        undoChange(m_pages, *journal);
    if (m_pages.size() > 0)
        checkHeader();
}

void FileImage::checkHeader()
{
    if (beginsWith(m_pages, successorSignature))
        throw LegacyFileError(QStringLiteral("it is a database of SQLite 3, not of SQLite 2"));
    if (!beginsWith(m_pages, signature))
        throw LegacyFileError(QStringLiteral("it is no SQLite 2 database"));
    if (pageCount() < 2)
        throw LegacyFileError(QStringLiteral("it is cut off after its first page"));
    m_bigEndian = hasBigEndianMark(m_pages);
    if (u32(m_pages.page(1) + byteOrderOffset) != byteOrderMark)
        throw LegacyFileError(QStringLiteral("its byte order is not known"));
    const quint32 format = u32(m_pages.page(1) + formatOffset);
    if (format > newestFormat)
        throw LegacyFileError(QStringLiteral("its format %1 is not known").arg(format));
}

quint32 FileImage::pageCount() const
{
    return m_pages.count();
}

const uchar* FileImage::treePage(quint32 number) const
{
    if (number < 2 || number > pageCount())
        throw LegacyFileError(QStringLiteral("it is damaged: page %1 does not exist").arg(number));
    return m_pages.page(number);
}

quint16 FileImage::u16(const uchar* bytes) const
{
    return m_bigEndian ? qFromBigEndian<quint16>(bytes) : qFromLittleEndian<quint16>(bytes);
}

quint32 FileImage::u32(const uchar* bytes) const
{
    return m_bigEndian ? qFromBigEndian<quint32>(bytes) : qFromLittleEndian<quint32>(bytes);
}

} // namespace DataAccess::Database::Sqlite2
