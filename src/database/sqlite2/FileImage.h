#pragma once

#include <QtGlobal>

#include <vector>

class QIODevice;

namespace DataAccess::Database::Sqlite2 {

/**
 * A whole legacy file in memory, as it was after the last complete change. Made of numbered pages; the first has
 * number 1. Numbers outside records are in the byte order of the machine that made the file.
 */
class FileImage
{
public:
    static constexpr int pageSize = 1024;

    /// Reads @p file to its end and undoes @p journal, if there is one. Throws LegacyFileError when it is no database.
    FileImage(QIODevice& file, QIODevice* journal);

    /// 0 for a file of no bytes, which is a database without tables.
    quint32 pageCount() const;
    /// The bytes of page @p number. Throws LegacyFileError when that is no page that a tree can use.
    const uchar* treePage(quint32 number) const;
    quint16 u16(const uchar* bytes) const;
    quint32 u32(const uchar* bytes) const;

    /// Whether @p file begins like one that a big-endian machine made.
    static bool hasBigEndianMark(const std::vector<uchar>& file);

private:
    void checkHeader();

    std::vector<uchar> m_bytes;
    bool m_bigEndian = false;
};

} // namespace DataAccess::Database::Sqlite2
