#include "database/SQLite2ValueConverter.h"

namespace DataAccess::Converter {

namespace {

/// Hexadecimal text; no text for no bytes at all.
QString hexadecimal(const QByteArray& bytes)
{
    return bytes.isNull() ? QString() : QString::fromLatin1(bytes.toHex());
}

} // namespace

SQLite2ValueConverter::~SQLite2ValueConverter() = default;

void SQLite2ValueConverter::bindValue(const QString& placeholder, const QByteArray& value)
{
    bind(placeholder, hexadecimal(value));
}

void SQLite2ValueConverter::append(QList<QVariant>& list, const QByteArray& value) const
{
    list.append(hexadecimal(value));
}

void SQLite2ValueConverter::value(QByteArray& value, int column) const
{
    value = QByteArray::fromHex(toString(column).toLocal8Bit());
}

} // namespace DataAccess::Converter
