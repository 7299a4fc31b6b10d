#include "transfer/private/StoredValue.h"

#include "database/backends/sqlite2/Sqlite2Backend.h"
#include "database/private/DateTimeText.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

namespace DataAccess::Transfer {

using Database::DateTimeText::format;

namespace {

const QString s_infinite = QStringLiteral("inf");
const QString s_noTime = QStringLiteral("CURRENT_TIMESTAMP");
const QString s_minusInfinite = QStringLiteral("-inf");

void appendNumber(QByteArray& json, double number)
{
    if (std::isinf(number)) {
        appendJsonString(json, number > 0 ? s_infinite : s_minusInfinite);
        return;
    }
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, number).ptr;
    json.append(text, static_cast<int>(end - text));
}

void appendEscaped(QByteArray& json, ushort character)
{
    char text[8];
    std::snprintf(text, sizeof text, "\\u%04x", character);
    json.append(text);
}

bool isPlain(ushort character)
{
    return character >= 0x20 && character < 0x7f && character != '"' && character != '\\';
}

/// Appends the character at @p place, which is not plain; gives the number of code units.
int appendSpecial(QByteArray& json, const QString& text, int place)
{
    const ushort character = text.at(place).unicode();
    if (character == '"' || character == '\\') {
        json.append('\\').append(static_cast<char>(character));
        return 1;
    }
    const bool isPair = QChar::isHighSurrogate(character) && place + 1 < text.size() &&
                        QChar::isLowSurrogate(text.at(place + 1).unicode());
    // Half of a pair, which a damaged text may have, has no form in UTF-8.
    if (character < 0x20 || character == 0x7f || character >= 0xfffe || (QChar::isSurrogate(character) && !isPair)) {
        appendEscaped(json, character);
        return 1;
    }
    const int units = isPair ? 2 : 1;
    json.append(text.mid(place, units).toUtf8());
    return units;
}

/// Whether @p position is NULL, where bytes are hexadecimal text: that makes no bytes of it.
bool isLegacyNull(const Interfaces::IValueConverter& row, int position)
{
    return dynamic_cast<const Converter::SQLite2ValueConverter*>(&row) != nullptr && row.toString(position).isNull();
}

} // namespace

void StoredValue::takeImage()
{
    // For an image that is NULL, PostgreSQL's bytes give an empty text.
    isNull = text.isEmpty();
    // Some legacy files have the text in hexadecimal digits, which no Base64 text of an image consists of.
    const QByteArray stored = text.toLatin1();
    const QByteArray decoded = QByteArray::fromHex(stored);
    if (!isNull && decoded.toHex() == stored.toLower())
        text = QString::fromLatin1(decoded);
}

bool StoredValue::read(const Interfaces::IValueConverter& row, int position, const SchemaColumn& column)
{
    isNull = false;
    switch (column.kind) {
    case Enumerations::Integer:
    case Enumerations::Boolean:
        // Zero is what a NULL gives, too; only as a floating number that is NaN.
        integer = column.kind == Enumerations::Boolean ? (row.toBool(position) ? 1 : 0) : row.toInt64(position);
        isNull = integer == 0 && std::isnan(row.toDouble(position));
        return true;
    case Enumerations::Numeric:
        number = row.toDouble(position);
        isNull = std::isnan(number);
        number += 0.0; // PostgreSQL knows no negative zero.
        return true;
    case Enumerations::TimeStamp:
        text = format(row.toUtcDateTime(position));
        break;
    case Enumerations::Date:
        text = format(row.toDate(position));
        break;
    case Enumerations::ByteArray:
        if (!column.isImage) {
            row.value(bytes, position);
            isNull = bytes.isNull() || (bytes.isEmpty() && isLegacyNull(row, position));
            return true;
        }
        [[fallthrough]];
    default:
        text = row.toString(position);
        isNull = text.isNull();
        if (column.isImage)
            takeImage();
        return true;
    }
    isNull = text.isNull();
    // To SQLite 2 a default was a mere word: rows without a time have it in its place.
    return !isNull || row.toString(position).isNull() || row.toString(position) == s_noTime;
}

bool StoredValue::read(const QJsonValue& value, const SchemaColumn& column)
{
    isNull = value.isNull();
    if (isNull)
        return true;
    switch (column.kind) {
    case Enumerations::Integer: {
        const QVariant given = value.toVariant();
        integer = given.toLongLong();
        return value.isDouble() && given.toDouble() == static_cast<double>(integer);
    }
    case Enumerations::Boolean:
        integer = value.toBool() ? 1 : 0;
        return value.isBool();
    case Enumerations::Numeric:
        number = value.toDouble();
        if (!value.isString())
            return value.isDouble();
        number = std::numeric_limits<double>::infinity() * (value.toString() == s_infinite ? 1 : -1);
        return value.toString() == s_infinite || value.toString() == s_minusInfinite;
    case Enumerations::TimeStamp:
        text = format(Database::DateTimeText::parse(value.toString(), Qt::UTC));
        return text == value.toString();
    case Enumerations::Date:
        text = format(Database::DateTimeText::parseDate(value.toString()));
        return text == value.toString();
    case Enumerations::ByteArray:
        if (!column.isImage) {
            const auto decoded =
                QByteArray::fromBase64Encoding(value.toString().toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
            bytes = decoded.decoded.isNull() ? QByteArray("") : decoded.decoded;
            return value.isString() && decoded.decodingStatus == QByteArray::Base64DecodingStatus::Ok;
        }
        [[fallthrough]];
    default:
        text = value.toString(QLatin1String(""));
        return value.isString();
    }
}

void StoredValue::bind(Interfaces::IValueConverter& values, const QString& placeholder,
                       const SchemaColumn& column) const
{
    if (isNull) {
        values.bindValue(placeholder, QString());
        return;
    }
    switch (column.kind) {
    case Enumerations::Integer:
        values.bindValue(placeholder, integer);
        break;
    case Enumerations::Boolean:
        values.bindValue(placeholder, integer != 0);
        break;
    case Enumerations::Numeric:
        values.bindValue(placeholder, number);
        break;
    case Enumerations::ByteArray:
        if (!column.isImage) {
            values.bindValue(placeholder, bytes);
            break;
        }
        [[fallthrough]];
    default:
        values.bindValue(placeholder, text);
    }
}

void StoredValue::appendTo(QByteArray& json, const SchemaColumn& column) const
{
    if (isNull) {
        json.append("null");
        return;
    }
    switch (column.kind) {
    case Enumerations::Integer:
        json.append(QByteArray::number(integer));
        break;
    case Enumerations::Boolean:
        json.append(integer != 0 ? "true" : "false");
        break;
    case Enumerations::Numeric:
        appendNumber(json, number);
        break;
    case Enumerations::ByteArray:
        if (!column.isImage) {
            json.append('"').append(bytes.toBase64()).append('"');
            break;
        }
        [[fallthrough]];
    default:
        appendJsonString(json, text);
    }
}

void appendJsonString(QByteArray& json, const QString& text)
{
    json.append('"');
    const ushort* const characters = text.utf16();
    for (int i = 0; i < text.size();) {
        int end = i;
        while (end < text.size() && isPlain(characters[end]))
            ++end;
        const int size = json.size();
        json.resize(size + end - i);
        for (char* to = json.data() + size; i < end; ++i)
            *to++ = static_cast<char>(characters[i]);
        if (i < text.size())
            i += appendSpecial(json, text, i);
    }
    json.append('"');
}

} // namespace DataAccess::Transfer
