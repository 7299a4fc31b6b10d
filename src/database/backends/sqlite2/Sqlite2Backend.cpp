#include "database/backends/sqlite2/Sqlite2Backend.h"

#include "database/backends/OpenFile.h"
#include "database/backends/sqlite2/Sqlite2Driver.h"
#include "database/backends/sqlite2/WorkingCopy.h"

namespace DataAccess::Converter {

namespace {

/// Hexadecimal text; no text for no bytes at all.
QString hexadecimal(const QByteArray& bytes)
{
    return bytes.isNull() ? QString() : QString::fromLatin1(bytes.toHex());
}

} // namespace

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

namespace DataAccess::Database {

const Backend& sqlite2Backend()
{
    static const Sqlite2Backend backend;
    return backend;
}

Sqlite2Backend::Sqlite2Backend()
    : SqliteFamily(Enumerations::SQLite2)
{}

QString Sqlite2Backend::driver() const
{
    Sqlite2::Sqlite2Driver::registerDriver();
    return QStringLiteral("QSQLITE2");
}

QSqlError Sqlite2Backend::prepareOpening(const QString& name, OpenFile& file) const
{
    // Making the copy tells what is wrong with a legacy file; that is done by the driver.
    file.hold(Sqlite2::WorkingCopy(name).path());
    return {};
}

std::shared_ptr<Interfaces::IValueConverter> Sqlite2Backend::converter(QSqlQuery& query) const
{
    return std::make_shared<Converter::SQLite2ValueConverter>(query);
}

} // namespace DataAccess::Database
