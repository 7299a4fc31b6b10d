#include "database/sqlite2/FileImage.h"

#include "database/sqlite2/HotJournal.h"
#include "database/sqlite2/LegacyFileError.h"

#include <QByteArray>
#include <QIODevice>
#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <limits>

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
bool beginsWith(const std::vector<uchar>& bytes, const char (&text)[Size])
{
    return bytes.size() >= Size && std::memcmp(bytes.data(), text, Size) == 0;
}

std::vector<uchar> readAll(QIODevice& file)
{
    const qint64 size = file.size();
    if (size / FileImage::pageSize > std::numeric_limits<qint32>::max())
        throw LegacyFileError(QStringLiteral("it is too large for a SQLite 2 database"));
    std::vector<uchar> bytes(static_cast<size_t>(size));
    qint64 done = 0;
    while (done < size) {
        const qint64 count = file.read(reinterpret_cast<char*>(bytes.data()) + done, size - done);
        if (count <= 0)
            throw LegacyFileError(QStringLiteral("it can't be read to its end: %1").arg(file.errorString()));
        done += count;
    }
    return bytes;
}

} // namespace

FileImage::FileImage(QIODevice& file, QIODevice* journal)
    : m_bytes(readAll(file))
{
    if (journal != nullptr)
        HotJournal::undo(m_bytes, *journal);
    if (!m_bytes.empty())
        checkHeader();
}

void FileImage::checkHeader()
{
    if (beginsWith(m_bytes, successorSignature))
        throw LegacyFileError(QStringLiteral("it is a database of SQLite 3, not of SQLite 2"));
    if (!beginsWith(m_bytes, signature))
        throw LegacyFileError(QStringLiteral("it is no SQLite 2 database"));
    if (pageCount() < 2)
        throw LegacyFileError(QStringLiteral("it is cut off after its first page"));
    m_bigEndian = hasBigEndianMark(m_bytes);
    if (u32(m_bytes.data() + byteOrderOffset) != byteOrderMark)
        throw LegacyFileError(QStringLiteral("its byte order is not known"));
    const quint32 format = u32(m_bytes.data() + formatOffset);
    if (format > newestFormat)
        throw LegacyFileError(QStringLiteral("its format %1 is not known").arg(format));
}

quint32 FileImage::pageCount() const
{
    return static_cast<quint32>(m_bytes.size() / pageSize);
}

const uchar* FileImage::treePage(quint32 number) const
{
    if (number < 2 || number > pageCount())
        throw LegacyFileError(QStringLiteral("it is damaged: page %1 does not exist").arg(number));
    return m_bytes.data() + size_t(number - 1) * pageSize;
}

quint16 FileImage::u16(const uchar* bytes) const
{
    return m_bigEndian ? qFromBigEndian<quint16>(bytes) : qFromLittleEndian<quint16>(bytes);
}

quint32 FileImage::u32(const uchar* bytes) const
{
    return m_bigEndian ? qFromBigEndian<quint32>(bytes) : qFromLittleEndian<quint32>(bytes);
}

bool FileImage::hasBigEndianMark(const std::vector<uchar>& file)
{
    return file.size() >= byteOrderOffset + sizeof byteOrderMark &&
           qFromBigEndian<quint32>(file.data() + byteOrderOffset) == byteOrderMark;
}

} // namespace DataAccess::Database::Sqlite2
