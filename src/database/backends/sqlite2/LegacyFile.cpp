#include "database/backends/sqlite2/LegacyFile.h"

#include "database/backends/sqlite2/LegacyFileError.h"
#include "database/backends/sqlite2/LegacyText.h"
#include "database/backends/sqlite2/TableParser.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace DataAccess::Database::Sqlite2 {

namespace {

constexpr quint32 schemaRoot = 2;
constexpr int schemaColumns = 5; // type, name, tbl_name, rootpage, sql
constexpr int largeRecord = 0x10000;

void require(bool sound, const char* damage)
{
    if (!sound)
        throw LegacyFileError(QStringLiteral("its schema is damaged: %1").arg(QLatin1String(damage)));
}

void requireFit(bool fits)
{
    if (!fits)
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

/// Splits the records of one table into the values of its columns.
class RecordDecoder
{
public:
    explicit RecordDecoder(int columnCount);

    /// The values of @p record as stored, null for NULL; they refer to its bytes and are valid as long as those, until
    /// the next call. Throws LegacyFileError when the record is damaged or has another number of columns.
    QVector<QByteArray>& decode(const QByteArray& record);

private:
    QVector<QByteArray> m_values;
};

RecordDecoder::RecordDecoder(int columnCount)
    : m_values(columnCount)
{}

QVector<QByteArray>& RecordDecoder::decode(const QByteArray& record)
{
    const int size = record.size();
    const int width = size < 0x100 ? 1 : size < 0x10000 ? 2 : 3;
    const int columns = m_values.size();
    const qint64 listSize = qint64(width) * (columns + 1);
    requireFit(size >= listSize);

    const char* const bytes = record.constData();
    int begin = number(bytes, width);
    requireFit(begin == listSize);
    for (int i = 0; i < columns; ++i) {
        const int end = number(bytes + qptrdiff(width) * (i + 1), width);
        requireFit(end >= begin && end <= size);
        m_values[i] = textAt(bytes + begin, end - begin);
        begin = end;
    }
    requireFit(begin == size);
    return m_values;
}

/// The number that @p digits spell.
quint32 pageNumber(const QByteArray& digits)
{
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    bool fits = false;
    const quint32 number = digits.toUInt(&fits);
    require(fits && digits.size() <= 10 && std::all_of(digits.begin(), digits.end(), isDigit),
            "a root is no page number");
    return number;
}

/// Makes @p values independent of the record that they are parts of.
void makeIndependent(QVector<QByteArray>& values)
{
    for (QByteArray& value : values) {
        if (!value.isNull())
            value.detach();
    }
}

} // namespace

LegacyFile::LegacyFile(FileImage image)
    : m_image(std::move(image))
    , m_reader(m_image)
{
    if (pageCount() == 0)
        return;
    RecordDecoder decoder(schemaColumns);
    m_reader.readTable(schemaRoot, [&](qint64, const QByteArray& record) {
        QVector<QByteArray>& values = decoder.decode(record);
        // The values outlive the call as parts of the schema.
        makeIndependent(values);
        addSchemaRow(values);
    });
}

void LegacyFile::addSchemaRow(const QVector<QByteArray>& values)
{
    const QByteArray& type = values.at(0);
    const QByteArray& sql = values.at(4);
    require(!values.at(1).isNull(), "an object has no name");
    const QByteArray name = LegacyText::toUtf8(values.at(1));
    const quint32 root = pageNumber(values.at(3));

    if (type == "table") {
        Table table{TableParser::parse(sql), root};
        require(LegacyText::sameWord(table.definition.name, name), "a table has two names");
        m_tables.push_back(std::move(table));
        return;
    }
    if (type == "index")
        m_image.treePage(root);
    else
        require(type == "view" || type == "trigger", "an object is of an unknown kind");
    // Automatic indexes have no statement: those of a table come with its constraints.
    require(!sql.isNull() || type == "index", "an object has no statement");
    if (!sql.isNull())
        m_objects.push_back({type, name, LegacyText::toUtf8(values.at(2)), LegacyText::toUtf8(sql)});
}

void LegacyFile::readRows(const Table& table, const RowHandler& handler)
{
    const int rowIdColumn = table.definition.rowIdColumn;
    RecordDecoder decoder(static_cast<int>(table.definition.columns.size()));
    m_reader.readTable(table.root, [&](qint64 rowId, QByteArray record) {
        QVector<QByteArray>& values = decoder.decode(record);
        for (QByteArray& value : values)
            value = LegacyText::toUtf8(value);
        // Writing a large value elsewhere takes its size twice: the record must not be in memory as well.
        if (record.size() >= largeRecord) {
            makeIndependent(values);
            record.clear();
        }
        if (rowIdColumn >= 0)
            values[rowIdColumn] = QByteArray::number(rowId);
        handler(rowId, values);
    });
}

} // namespace DataAccess::Database::Sqlite2
