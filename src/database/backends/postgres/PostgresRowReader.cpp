#include "database/IRowReader.h"
#include "database/ValueConverter.h"
#include "database/backends/postgres/PostgresBackend.h"
#include "database/backends/postgres/PostgresConnection.h"
#include "database/private/DateTimeText.h"
#include "database/private/StatementError.h"
#include "database/private/UuidText.h"

#include <QByteArray>
#include <QDateTime>
#include <QSqlQuery>
#include <QSqlResult>
#include <QString>
#include <QVariant>
#include <QVector>
#include <QtNumeric>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <memory>
#include <string_view>
#include <utility>

namespace DataAccess::Database {

namespace {

/// The types of PostgreSQL that are not read as text, and those of text, by the numbers that its catalogue pg_type
/// gives them.
enum PostgresType : Oid {
    Boolean = 16,
    Bytea = 17,
    BigInt = 20,
    SmallInt = 21,
    Integer = 23,
    RegProc = 24,
    Text = 25,
    Xid = 28,
    Cid = 29,
    Float4 = 700,
    Float8 = 701,
    BpChar = 1042,
    VarChar = 1043,
    Date = 1082,
    Time = 1083,
    Timestamp = 1114,
    TimestampTz = 1184,
    TimeTz = 1266,
    Numeric = 1700
};

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

/// What is in @p column of @p row of @p result, as the variant that Qt's driver makes of it.
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

/// The number in @p text, all of it; false when it is none.
template <typename Number>
bool parse(std::string_view text, Number& number)
{
    const char* const end = text.data() + text.size();
    const auto [rest, status] = std::from_chars(text.data(), end, number);
    return status == std::errc() && rest == end;
}

QLatin1String latin1(std::string_view text)
{
    return QLatin1String(text.data(), static_cast<int>(text.size()));
}

/// The columns of one row of a result. A value of the usual type and form is taken from its text; any other one takes
/// the way through the variant that Qt's driver makes of it.
class ColumnValues final : public Converter::ValueConverter
{
public:
    ColumnValues(QSqlQuery& query, const PGresult* result)
        : ValueConverter(query)
        , m_result(result)
    {
        for (int column = 0; column < PQnfields(result); ++column)
            m_types.append(PQftype(result, column));
    }

    /// Moves to the next row; false after the last one.
    bool next() { return ++m_row < PQntuples(m_result); }

    bool toBool(int column) const override
    {
        const std::string_view text = textOf<Boolean>(column);
        return text.empty() ? ValueConverter::toBool(column) : text.front() == 't';
    }

    qint32 toInt32(int column) const override
    {
        qint32 number = 0;
        return parse(textOf<SmallInt, Integer>(column), number) ? number : ValueConverter::toInt32(column);
    }

    qint64 toInt64(int column) const override
    {
        qint64 number = 0;
        return parse(textOf<SmallInt, Integer, BigInt>(column), number) ? number : ValueConverter::toInt64(column);
    }

    unsigned int toUint(int column) const override
    {
        unsigned int number = 0;
        return parse(textOf<SmallInt, Integer>(column), number) ? number : ValueConverter::toUint(column);
    }

    double toDouble(int column) const override
    {
        double number = 0;
        if (parse(textOf<Numeric, Float8, Float4>(column), number))
            return number;
        return PQgetisnull(m_result, m_row, column) != 0 ? std::numeric_limits<double>::quiet_NaN()
                                                         : ValueConverter::toDouble(column);
    }

    QString toString(int column) const override
    {
        const std::string_view text = textOf<Text, VarChar, BpChar>(column);
        return text.data() != nullptr ? QString::fromUtf8(text.data(), static_cast<int>(text.size()))
                                      : ValueConverter::toString(column);
    }

    QUuid toUuid(int column) const override
    {
        const std::string_view text = textOf<Text, VarChar, BpChar>(column);
        return text.data() != nullptr ? parseUuid(latin1(text)) : ValueConverter::toUuid(column);
    }

    QDate toDate(int column) const override
    {
        const std::string_view text = textOf<Date>(column);
        const QDate date = text.empty() ? QDate() : DateTimeText::parseDate(latin1(text));
        return date.isValid() ? date : ValueConverter::toDate(column);
    }

    QDateTime toDateTime(int column) const override
    {
        const QDateTime time = parsedTime(column, Qt::LocalTime);
        return time.date().isValid() ? time : ValueConverter::toDateTime(column);
    }

    QDateTime toUtcDateTime(int column) const override
    {
        const QDateTime time = parsedTime(column, Qt::UTC);
        return time.isValid() ? time : ValueConverter::toUtcDateTime(column);
    }

    int columnCount() const override { return PQnfields(m_result); }

protected:
    QVariant read(int column) const override { return postgresValue(m_result, m_row, column); }

private:
    /// The text of @p column; without an address when its type is none of @p types, or it is NULL.
    template <PostgresType... types>
    std::string_view textOf(int column) const
    {
        const Oid type = m_types.value(column);
        if (((type != types) && ...))
            return {};
        const int size = PQgetlength(m_result, m_row, column);
        if (size == 0 && PQgetisnull(m_result, m_row, column) != 0)
            return {};
        return {PQgetvalue(m_result, m_row, column), static_cast<std::size_t>(size)};
    }

    /// The usual form of a time stamp, "yyyy-MM-dd HH:mm:ss.zzz", of which PostgreSQL leaves out zeros at the end.
    QDateTime parsedTime(int column, Qt::TimeSpec timeSpec) const
    {
        constexpr std::size_t whole = 19;
        char padded[] = "0000-00-00 00:00:00.000";
        const std::string_view value = textOf<Timestamp>(column);
        if (value.size() < whole || value.size() >= sizeof padded || value.size() == whole + 1)
            return {};
        std::copy(value.begin(), value.end(), padded);
        return DateTimeText::parse(QLatin1String(padded, sizeof padded - 1), timeSpec);
    }

    const PGresult* m_result;
    QVector<Oid> m_types; // of the columns
    int m_row = -1;
};

class PostgresRowReader final : public Interfaces::IRowReader
{
public:
    explicit PostgresRowReader(PostgresResult result)
        : m_result(std::move(result))
        , m_noQuery(static_cast<QSqlResult*>(nullptr))
        , m_values(m_noQuery, m_result.get())
    {}

    bool next() override { return m_values.next(); }
    const Interfaces::IValueConverter& row() const override { return m_values; }
    QString error() const override { return {}; }

private:
    PostgresResult m_result;
    QSqlQuery m_noQuery; // The values are not those of a query of Qt.
    ColumnValues m_values;
};

} // namespace

std::unique_ptr<Interfaces::IRowReader> PostgresBackend::reader(const QSqlDriver& driver, const QString& select) const
{
    PGconn* const connection = postgresConnection(&driver);
    if (connection == nullptr)
        return nullptr;
    PostgresResult result(PQexec(connection, select.toUtf8().constData()), &PQclear);
    const ExecStatusType status = PQresultStatus(result.get());
    if (status != PGRES_TUPLES_OK && status != PGRES_COMMAND_OK)
        throwStatementError(postgresError(connection, result.get(), "Unable to create query"));
    return std::make_unique<PostgresRowReader>(std::move(result));
}

} // namespace DataAccess::Database
