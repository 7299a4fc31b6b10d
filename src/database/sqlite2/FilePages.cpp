#include "database/sqlite2/FilePages.h"

#include "database/sqlite2/LegacyFileError.h"

#include <QIODevice>

#include <algorithm>
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

} // namespace DataAccess::Database::Sqlite2
