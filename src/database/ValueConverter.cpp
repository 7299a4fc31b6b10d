#include "database/ValueConverter.h"

#include "database/DbException.h"

#include <QBuffer>
#include <QJsonDocument>
#include <QSqlQuery>
#include <QSqlRecord>

#include <cmath>
#include <limits>

namespace DataAccess {

Interfaces::IValueConverter::~IValueConverter() = default;

namespace Converter {

namespace {

/// The date and time of @p value as they stand, in ISO 8601 with milliseconds.
QString isoText(const QDateTime& value)
{
    if (value.isValid() || !value.date().isValid())
        return value.toString(Qt::ISODateWithMs);
    // A local time that a change of the clocks left out: Qt does not print it, but it is what was read.
    QString text = QDateTime(value.date(), value.time(), Qt::UTC).toString(Qt::ISODateWithMs);
    text.chop(1);
    return text;
}

/// What @p value holds, if it is a @p T as it stands: then there is nothing to convert.
template <typename T>
const T* held(const QVariant& value)
{
    return value.userType() == qMetaTypeId<T>() ? static_cast<const T*>(value.constData()) : nullptr;
}

/// Whether every backend gives @p text back as it was.
bool isStorable(const QString& text)
{
    const QChar* const end = text.constEnd();
    for (const QChar* c = text.constBegin(); c != end; ++c) {
        if (c->isNull() || c->unicode() >= 0xfffe || c->isLowSurrogate())
            return false;
        if (c->isHighSurrogate() && (++c == end || !c->isLowSurrogate()))
            return false;
    }
    return true;
}

/// The form in which @p text is bound. Throws ExecutionException for a text that not every backend gives back as it
/// was; it names @p placeholder, unless that is null.
QString storable(const QString& text, const QString& placeholder)
{
    if (!isStorable(text))
        refuseValue("A text with NUL characters, lone surrogates or noncharacters cannot be stored", placeholder);
    // A leading byte order mark counts as no part of the text, for SQLite where it is bound and for PostgreSQL's driver
    // where it is read; a second one does.
    constexpr QChar byteOrderMark(QChar::ByteOrderMark);
    return text.startsWith(byteOrderMark) ? byteOrderMark + text : text;
}

} // namespace

void refuseValue(const char* reason, const QString& placeholder)
{
    QByteArray text(reason);
    if (!placeholder.isNull())
        text += " as \"" + placeholder.midRef(1).toLocal8Bit() + '"';
    throw Exceptions::ExecutionException(text.constData());
}

ValueConverter::ValueConverter(QSqlQuery& query)
    : m_query(query)
{}

ValueConverter::~ValueConverter() = default;

QSqlQuery& ValueConverter::query()
{
    return m_query;
}

QVariant ValueConverter::read(int column) const
{
    return m_query.value(column);
}

void ValueConverter::bind(const QString& placeholder, const QVariant& value)
{
    m_query.bindValue(placeholder, value, QSql::In);
}

void ValueConverter::bindTime(const QString& placeholder, const QDateTime& value, QString (*format)(const QDateTime&))
{
    // Only in UTC do equal times have equal texts.
    if (value.timeSpec() != Qt::UTC || !value.isValid()) {
        bind(placeholder, format(value));
        return;
    }
    if (m_boundTimeText.isNull() || value != m_boundTime) {
        m_boundTimeText = format(value);
        m_boundTime = value;
    }
    bind(placeholder, m_boundTimeText);
}

void ValueConverter::requireStorable(const QString& placeholder, const QDate& date)
{
    if (date.isValid() && (date.year() < 1 || date.year() > 9999))
        refuseValue("A date outside the years 1 to 9999 cannot be stored", placeholder);
}

void ValueConverter::bindValue(const QString& placeholder, signed char value)
{
    bind(placeholder, static_cast<int>(value));
}

void ValueConverter::bindValue(const QString& placeholder, unsigned int value)
{
    // Not as an unsigned variant: SQLite's driver would bind that as a signed 32-bit number.
    bind(placeholder, static_cast<qint64>(value));
}

void ValueConverter::bindValue(const QString& placeholder, quint64 value)
{
    // The backends' integers are signed, and SQLite would make a larger one a floating number.
    if (value > static_cast<quint64>(std::numeric_limits<qint64>::max()))
        refuseValue("An integer above 9223372036854775807 cannot be stored", placeholder);
    bind(placeholder, static_cast<qint64>(value));
}

void ValueConverter::bindValue(const QString& placeholder, double value)
{
    bind(placeholder, std::isnan(value) ? QVariant(QVariant::Double) : QVariant(value));
}

void ValueConverter::bindValue(const QString& placeholder, const QString& value)
{
    bind(placeholder, storable(value, placeholder));
}

void ValueConverter::bindValue(const QString& placeholder, const QDate& value)
{
    requireStorable(placeholder, value);
    bind(placeholder, value);
}

void ValueConverter::bindValue(const QString& placeholder, const QDateTime& value)
{
    requireStorable(placeholder, value.date());
    bindTime(placeholder, value, &isoText);
}

void ValueConverter::bindValue(const QString& placeholder, const QImage& value)
{
    if (value.isNull()) {
        bind(placeholder, QVariant(QVariant::String));
        return;
    }
    QByteArray png;
    QBuffer buffer(&png);
    if (!buffer.open(QIODevice::WriteOnly) || !value.save(&buffer, "PNG"))
        refuseValue("The image cannot be saved as PNG", placeholder);
    bind(placeholder, QString::fromLatin1(png.toBase64()));
}

void ValueConverter::bindValue(const QString& placeholder, const QJsonObject& value)
{
    bindValue(placeholder, QString::fromUtf8(QJsonDocument(value).toJson(QJsonDocument::Compact)));
}

void ValueConverter::value(char& value, int column) const
{
    const QString text = toString(column);
    value = text.isEmpty() ? '\0' : text.front().toLatin1();
}

bool ValueConverter::toBool(int column) const
{
    const QVariant value = read(column);
    const qlonglong* const number = held<qlonglong>(value);
    return number != nullptr ? *number != 0 : value.toBool();
}

qint32 ValueConverter::toInt32(int column) const
{
    const QVariant value = read(column);
    const qlonglong* const number = held<qlonglong>(value);
    return number != nullptr ? static_cast<qint32>(*number) : value.toInt();
}

unsigned int ValueConverter::toUint(int column) const
{
    const QVariant value = read(column);
    const qlonglong* const number = held<qlonglong>(value);
    return number != nullptr ? static_cast<unsigned int>(*number) : value.toUInt();
}

double ValueConverter::toDouble(int column) const
{
    const QVariant value = read(column);
    if (value.isNull())
        return std::numeric_limits<double>::quiet_NaN();
    const double* const number = held<double>(value);
    return number != nullptr ? *number : value.toDouble();
}

QString ValueConverter::toString(int column) const
{
    const QVariant value = read(column);
    const QString* const text = held<QString>(value);
    return text != nullptr ? *text : value.toString();
}

QDateTime ValueConverter::toUtcDateTime(int column) const
{
    const QDateTime local = toDateTime(column);
    // A time left out by a change of the clocks is not valid, and equal to another one.
    if (!local.isValid() || !m_readTime.isValid() || local != m_readTime) {
        m_readUtcTime = local.date().isValid() ? QDateTime(local.date(), local.time(), Qt::UTC) : QDateTime();
        m_readTime = local;
    }
    return m_readUtcTime;
}

int ValueConverter::columnCount() const
{
    if (m_columnCount < 0)
        m_columnCount = m_query.record().count();
    return m_columnCount;
}

QImage ValueConverter::toImage(int column) const
{
    return QImage::fromData(QByteArray::fromBase64(read(column).toByteArray()));
}

QJsonObject ValueConverter::toJsonObject(int column) const
{
    return QJsonDocument::fromJson(read(column).toByteArray()).object();
}

void ValueConverter::append(QList<QVariant>& list, const QString& value) const
{
    list.append(storable(value, QString()));
}

QString ValueConverter::type(const Enumerations::DataType& kind, unsigned int size) const
{
    switch (kind) {
    case Enumerations::Integer:
        return size == 2   ? QStringLiteral("SMALLINT")
               : size == 4 ? QStringLiteral("INTEGER")
                           : QStringLiteral("BIGINT");
    case Enumerations::TimeStamp:
        return QStringLiteral("TIMESTAMP");
    case Enumerations::Boolean:
        return QStringLiteral("BOOLEAN");
    case Enumerations::Numeric:
        return QStringLiteral("NUMERIC");
    case Enumerations::Char:
        return QStringLiteral("CHAR(%1)").arg(size);
    case Enumerations::VarChar:
        return QStringLiteral("VARCHAR(%1)").arg(size);
    case Enumerations::ByteArray:
        return QStringLiteral("BYTEA");
    case Enumerations::Date:
        return QStringLiteral("DATE");
    default:
        return QStringLiteral("TEXT");
    }
}

} // namespace Converter
} // namespace DataAccess
