#include "database/sqlite2/RecordDecoder.h"

#include "database/sqlite2/LegacyFileError.h"

#include <cstring>

namespace DataAccess::Database::Sqlite2 {

namespace {

void require(bool sound)
{
    if (!sound)
        throw LegacyFileError(QStringLiteral("it is damaged: a record does not fit its table"));
}

/// The little-endian number of @p width bytes at @p bytes.
int number(const char* bytes, int width)
{
    int value = 0;
    for (int i = width - 1; i >= 0; --i)
        value = value << 8 | static_cast<uchar>(bytes[i]);
    return value;
}

/// A text ends before its first zero byte; what a writer may have left behind it was never shown by any program.
QByteArray textAt(const char* begin, int size)
{
    if (size == 0)
        return {};
    const void* const zero = std::memchr(begin, 0, static_cast<size_t>(size));
    return QByteArray::fromRawData(begin,
                                   zero == nullptr ? size : static_cast<int>(static_cast<const char*>(zero) - begin));
}

} // namespace

RecordDecoder::RecordDecoder(int columnCount)
    : m_values(columnCount)
{}

QVector<QByteArray>& RecordDecoder::decode(const QByteArray& record)
{
    const int size = record.size();
    const int width = size < 0x100 ? 1 : size < 0x10000 ? 2 : 3;
    const int columns = m_values.size();
    const qint64 listSize = qint64(width) * (columns + 1);
    require(size >= listSize);

    const char* const bytes = record.constData();
    int begin = number(bytes, width);
    require(begin == listSize);
    for (int i = 0; i < columns; ++i) {
        const int end = number(bytes + qptrdiff(width) * (i + 1), width);
        require(end >= begin && end <= size);
        m_values[i] = textAt(bytes + begin, end - begin);
        begin = end;
    }
    require(begin == size);
    return m_values;
}

} // namespace DataAccess::Database::Sqlite2
