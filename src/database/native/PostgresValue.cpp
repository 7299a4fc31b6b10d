#include "database/native/PostgresValue.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QtNumeric>

#include <cstddef>
#include <cstdlib>
#include <memory>

namespace DataAccess::Database::Native {

namespace {

QVariant::Type variantType(Oid type)
{
    switch (type) {
    case Boolean:
        return QVariant::Bool;
    case SmallInt:
    case Integer:
    case RegProc:
    case Xid:
    case Cid:
        return QVariant::Int;
    case BigInt:
        return QVariant::LongLong;
    case Float4:
    case Float8:
    case Numeric:
        return QVariant::Double;
    case Date:
        return QVariant::Date;
    case Time:
    case TimeTz:
        return QVariant::Time;
    case Timestamp:
    case TimestampTz:
        return QVariant::DateTime;
    case Bytea:
        return QVariant::ByteArray;
    default:
        return QVariant::String;
    }
}

QVariant number(const char* text, bool numeric)
{
    if (!numeric && qstrcmp(text, "Infinity") == 0)
        return qInf();
    if (!numeric && qstrcmp(text, "-Infinity") == 0)
        return -qInf();
    bool converted = false;
    const double value = QString::fromLatin1(text).toDouble(&converted);
    return converted || !numeric ? QVariant(value) : QVariant();
}

QVariant dateTime(QString text)
{
    constexpr int dateOnly = 10;
    if (text.size() < dateOnly)
        return QDateTime();
    const QChar sign = text[text.size() - 3]; // of an offset that has hours only
    if (sign == QLatin1Char('-') || sign == QLatin1Char('+'))
        text += QLatin1String(":00");
    return QDateTime::fromString(text, Qt::ISODate).toLocalTime();
}

QVariant bytes(const char* text)
{
    std::size_t size = 0;
    const std::unique_ptr<unsigned char, void (*)(void*)> data(
        PQunescapeBytea(reinterpret_cast<const unsigned char*>(text), &size), &PQfreemem);
    return QByteArray(reinterpret_cast<const char*>(data.get()), static_cast<int>(size));
}

} // namespace

QVariant postgresValue(const PGresult* result, int row, int column)
{
    const Oid postgresType = PQftype(result, column);
    const QVariant::Type type = variantType(postgresType);
    if (PQgetisnull(result, row, column) != 0)
        return QVariant(type);
    const char* const value = PQgetvalue(result, row, column);
    switch (type) {
    case QVariant::Bool:
        return *value == 't';
    case QVariant::Int:
        return std::atoi(value);
    case QVariant::LongLong:
        return QByteArray(value).toLongLong();
    case QVariant::Double:
        return number(value, postgresType == Numeric);
    case QVariant::Date:
        return QDate::fromString(QString::fromLatin1(value), Qt::ISODate);
    case QVariant::Time:
        return QTime::fromString(QString::fromLatin1(value), Qt::ISODate);
    case QVariant::DateTime:
        return dateTime(QString::fromLatin1(value));
    case QVariant::ByteArray:
        return bytes(value);
    default:
        return QString::fromUtf8(value);
    }
}

} // namespace DataAccess::Database::Native
