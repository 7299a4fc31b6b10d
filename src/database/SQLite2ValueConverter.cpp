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

QImage SQLite2ValueConverter::toImage(int column) const
{
    QByteArray text = toString(column).toLatin1();
    // The Base64 text of an image never has hexadecimal digits only: how each format begins rules that out.
    const QByteArray decoded = QByteArray::fromHex(text);
    if (decoded.toHex() == text.toLower())
        text = decoded;
    return QImage::fromData(QByteArray::fromBase64(text));
}

} // namespace DataAccess::Converter
