#include "database/SQLite3ValueConverter.h"

#include "database/ExecutionException.h"
#include "database/SQLiteDateTime.h"

namespace DataAccess::Converter {

using Exceptions::ExecutionException;

namespace {

void requireSize(bool allowed, const char* message)
{
    if (!allowed)
        throw ExecutionException(message);
}

} // namespace

SQLite3ValueConverter::~SQLite3ValueConverter() = default;

void SQLite3ValueConverter::bindValue(const QString& placeholder, const QDate& value)
{
    requireStorable(placeholder, value);
    bind(placeholder, Database::SQLiteDateTime::format(value));
}

void SQLite3ValueConverter::bindValue(const QString& placeholder, const QDateTime& value)
{
    requireStorable(placeholder, value.date());
    bindTime(placeholder, value, &Database::SQLiteDateTime::format);
}

void SQLite3ValueConverter::value(QByteArray& value, int column) const
{
    const QVariant stored = read(column);
    value = stored.toByteArray();
    // For no bytes at all SQLite has no address, and so Qt makes a null array of them; NULL has the type of a text.
    if (value.isNull() && stored.type() == QVariant::ByteArray)
        value = QByteArray("");
}

QDate SQLite3ValueConverter::toDate(int column) const
{
    return Database::SQLiteDateTime::parseDate(toString(column));
}

QDateTime SQLite3ValueConverter::toDateTime(int column) const
{
    return Database::SQLiteDateTime::parse(toString(column), Qt::LocalTime);
}

QDateTime SQLite3ValueConverter::toUtcDateTime(int column) const
{
    const QString text = toString(column);
    if (m_readTimeText.isNull() || text != m_readTimeText) {
        m_readTime = Database::SQLiteDateTime::parse(text, Qt::UTC);
        m_readTimeText = text;
    }
    return m_readTime;
}

QString SQLite3ValueConverter::type(const Enumerations::DataType& kind, unsigned int size) const
{
    switch (kind) {
    case Enumerations::Integer:
        requireSize(size == 2 || size == 4 || size == 8, "Invalid Integer Size!");
        return QStringLiteral("INTEGER");
    case Enumerations::TimeStamp:
        requireSize(size == 0, "Invalid TimeStamp Size!");
        break;
    case Enumerations::Boolean:
        requireSize(size == 0, "Invalid Boolean Size!");
        return QStringLiteral("INTEGER");
    case Enumerations::Numeric:
        requireSize(size == 0, "Invalid Numeric Size!");
        return QStringLiteral("REAL");
    case Enumerations::Text:
        requireSize(size == 0, "Invalid Text Size!");
        break;
    case Enumerations::Char:
        requireSize(size != 0, "Invalid Char Size!");
        break;
    case Enumerations::VarChar:
        requireSize(size != 0, "Invalid VarChar Size!");
        break;
    case Enumerations::ByteArray:
        requireSize(size == 0, "Invalid ByteArray Size!");
        break;
    case Enumerations::Date:
        requireSize(size == 0, "Invalid Date Size!");
        break;
    default:
        break;
    }
    return QStringLiteral("TEXT");
}

} // namespace DataAccess::Converter
