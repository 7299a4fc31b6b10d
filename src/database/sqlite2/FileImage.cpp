#include "database/sqlite2/FileImage.h"

#include "database/sqlite2/HotJournal.h"
#include "database/sqlite2/LegacyFileError.h"

#include <QtEndian>

#include <cstring>

namespace DataAccess::Database::Sqlite2 {

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

} // namespace

FileImage::FileImage(QIODevice& file, QIODevice* journal)
    : m_pages(file)
{
    if (journal != nullptr)
        HotJournal::undo(m_pages, *journal);
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

bool FileImage::hasBigEndianMark(const FilePages& file)
{
    return file.count() > 0 && qFromBigEndian<quint32>(file.page(1) + byteOrderOffset) == byteOrderMark;
}

} // namespace DataAccess::Database::Sqlite2
