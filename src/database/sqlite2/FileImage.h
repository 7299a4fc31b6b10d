#pragma once

#include "database/sqlite2/FilePages.h"

class QIODevice;

namespace DataAccess::Database::Sqlite2 {

/**
 * A whole legacy file in memory, as it was after the last complete change. Numbers outside records are in the byte
 * order of the machine that made the file.
 */
class FileImage
{
public:
    static constexpr int pageSize = FilePages::pageSize;

    /// Reads @p file to its end and undoes @p journal, if there is one. Throws LegacyFileError when it is no database.
    FileImage(QIODevice& file, QIODevice* journal);

    /// 0 for a file of no bytes, which is a database without tables.
    quint32 pageCount() const;
    /// The bytes of page @p number, null after release(). Throws LegacyFileError when that is no page that a tree can
    /// use.
    const uchar* treePage(quint32 number) const;
    /// Tells, once for each page, that its bytes are not needed any more.
    void release(quint32 number) { m_pages.release(number); }
    quint16 u16(const uchar* bytes) const;
    quint32 u32(const uchar* bytes) const;

    /// Whether @p file begins like one that a big-endian machine made.
    static bool hasBigEndianMark(const FilePages& file);

private:
    void checkHeader();

    FilePages m_pages;
    bool m_bigEndian = false;
};

} // namespace DataAccess::Database::Sqlite2
