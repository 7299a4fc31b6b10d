#pragma once

#include <QtGlobal>

#include <memory>
#include <vector>

class QIODevice;

namespace DataAccess::Database::Sqlite2 {

/**
 * The bytes of a file in memory, as pages; the first has number 1. They lie in blocks, each of which is given back to
 * the system when nobody needs a page of it any more: what is made of a large value needs that memory.
 */
class FilePages
{
public:
    static constexpr int pageSize = 1024;

    /// Reads @p file to its end. Throws LegacyFileError.
    explicit FilePages(QIODevice& file);

    /// Size in bytes. A last page that is not complete counts here only.
    qint64 size() const { return m_size; }
    quint32 count() const { return static_cast<quint32>(m_size / pageSize); }
    /// The bytes of a page that exists; null once its block was given back.
    const uchar* page(quint32 number) const;
    /// Gives a page that exists other content: the pageSize bytes at @p bytes.
    void overwrite(quint32 number, const char* bytes);
    /// Cuts pages off, or adds pages of zeros.
    void resize(quint32 count);
    /// Tells, once for each page, that it is not needed any more.
    void release(quint32 number);

private:
    static constexpr quint32 pagesPerBlock = 64;
    static constexpr qint64 blockSize = qint64(pagesPerBlock) * pageSize;

    /// Taken from the system, and given back to it, directly: the heap would keep what it gets back.
    struct Unmap
    {
        void operator()(uchar* bytes) const;
    };
    struct Block
    {
        Block();
        std::unique_ptr<uchar[], Unmap> bytes; ///< Zeros at first.
        quint32 needed = pagesPerBlock;
    };

    void setSize(qint64 size);
    uchar* at(quint32 number) const;

    qint64 m_size = 0;
    std::vector<Block> m_blocks;
};

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

private:
    void checkHeader();

    FilePages m_pages;
    bool m_bigEndian = false;
};

} // namespace DataAccess::Database::Sqlite2
