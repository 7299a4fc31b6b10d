#include "database/sqlite2/LegacyFile.h"

#include "database/sqlite2/LegacyFileError.h"
#include "database/sqlite2/LegacyText.h"
#include "database/sqlite2/RecordDecoder.h"
#include "database/sqlite2/TableParser.h"

#include <algorithm>
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

/// Makes them independent of the record that they are parts of.
void takeOver(QVector<QByteArray>& values)
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
        // They outlive the call as parts of the schema.
        takeOver(values);
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
        // Whoever writes a large value elsewhere has it in memory twice: the record must not be there as well.
        if (record.size() >= largeRecord) {
            takeOver(values);
            record.clear();
        }
        if (rowIdColumn >= 0)
            values[rowIdColumn] = QByteArray::number(rowId);
        handler(rowId, values);
    });
}

} // namespace DataAccess::Database::Sqlite2
