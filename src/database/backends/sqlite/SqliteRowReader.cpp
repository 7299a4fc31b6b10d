#include "database/IRowReader.h"
#include "database/backends/sqlite/SqliteBackend.h"
#include "database/private/DateTimeText.h"
#include "database/private/EightCharacters.h"
#include "database/private/StatementError.h"
#include "database/private/UuidText.h"

#include <QSqlQuery>
#include <QSqlResult>
#include <QVariant>

#include <cstddef>
#include <sqlite3.h>
#include <string>
#include <string_view>
#include <utility>

namespace DataAccess::Database {

namespace {

using Statement = std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)>;

/// The columns of the row that a statement stands on. A value of the usual type is taken as it is; any other one takes
/// the way through the variant that Qt's driver would have made of it.
class ColumnValues final : public Converter::SQLite3ValueConverter
{
public:
    ColumnValues(QSqlQuery& query, sqlite3_stmt* statement)
        : SQLite3ValueConverter(query)
        , m_statement(statement)
    {}

    bool toBool(int column) const override
    {
        sqlite3_value* const value = valueOf(column);
        return isInteger(value) ? sqlite3_value_int64(value) != 0 : SQLite3ValueConverter::toBool(column);
    }

    qint32 toInt32(int column) const override
    {
        sqlite3_value* const value = valueOf(column);
        return isInteger(value) ? static_cast<qint32>(sqlite3_value_int64(value))
                                : SQLite3ValueConverter::toInt32(column);
    }

    qint64 toInt64(int column) const override
    {
        sqlite3_value* const value = valueOf(column);
        return isInteger(value) ? sqlite3_value_int64(value) : SQLite3ValueConverter::toInt64(column);
    }

    unsigned int toUint(int column) const override
    {
        sqlite3_value* const value = valueOf(column);
        return isInteger(value) ? static_cast<unsigned int>(sqlite3_value_int64(value))
                                : SQLite3ValueConverter::toUint(column);
    }

    double toDouble(int column) const override
    {
        sqlite3_value* const value = valueOf(column);
        return sqlite3_value_type(value) == SQLITE_FLOAT ? sqlite3_value_double(value)
                                                         : SQLite3ValueConverter::toDouble(column);
    }

    QString toString(int column) const override
    {
        const QLatin1String text = asciiText(column);
        return text.data() != nullptr ? QString(text) : SQLite3ValueConverter::toString(column);
    }

    QUuid toUuid(int column) const override
    {
        const QLatin1String text = asciiText(column);
        return text.data() != nullptr ? parseUuid(text) : SQLite3ValueConverter::toUuid(column);
    }

    QDate toDate(int column) const override
    {
        const QLatin1String text = asciiText(column);
        return text.data() != nullptr ? DateTimeText::parseDate(text) : SQLite3ValueConverter::toDate(column);
    }

    QDateTime toDateTime(int column) const override
    {
        const QLatin1String text = asciiText(column);
        return text.data() != nullptr ? DateTimeText::parse(text, Qt::LocalTime)
                                      : SQLite3ValueConverter::toDateTime(column);
    }

    QDateTime toUtcDateTime(int column) const override
    {
        const QLatin1String text = asciiText(column);
        if (text.data() == nullptr)
            return SQLite3ValueConverter::toUtcDateTime(column);
        const std::string_view bytes(text.data(), static_cast<std::size_t>(text.size()));
        if (m_timeText.empty() || bytes != m_timeText) {
            m_time = DateTimeText::parse(text, Qt::UTC);
            m_timeText = bytes;
        }
        return m_time;
    }

    int columnCount() const override { return sqlite3_column_count(m_statement); }

protected:
    QVariant read(int column) const override
    {
        switch (sqlite3_column_type(m_statement, column)) {
        case SQLITE_INTEGER:
            return static_cast<qlonglong>(sqlite3_column_int64(m_statement, column));
        case SQLITE_FLOAT:
            return sqlite3_column_double(m_statement, column);
        case SQLITE_NULL:
            return QVariant(QVariant::String);
        case SQLITE_BLOB: {
            const auto* const bytes = static_cast<const char*>(sqlite3_column_blob(m_statement, column));
            return QByteArray(bytes, sqlite3_column_bytes(m_statement, column));
        }
        default: {
            const auto* const text = static_cast<const QChar*>(sqlite3_column_text16(m_statement, column));
            return QString(text, sqlite3_column_bytes16(m_statement, column) / static_cast<int>(sizeof(QChar)));
        }
        }
    }

private:
    /// To be asked for its type, and then for its content. Nothing protects it from other threads, which do not have
    /// the connection meanwhile; so that costs half of what it does to ask for the column twice.
    sqlite3_value* valueOf(int column) const { return sqlite3_column_value(m_statement, column); }
    static bool isInteger(sqlite3_value* value) { return sqlite3_value_type(value) == SQLITE_INTEGER; }

    /// The text of @p column, good until the next row; null when it is no text, or has other characters than ASCII,
    /// which SQLite decodes in its own way.
    QLatin1String asciiText(int column) const
    {
        sqlite3_value* const value = valueOf(column);
        if (sqlite3_value_type(value) != SQLITE_TEXT)
            return QLatin1String(nullptr);
        const auto* const bytes = reinterpret_cast<const char*>(sqlite3_value_text(value));
        const QLatin1String text(bytes, sqlite3_value_bytes(value));
        return EightCharacters::isAscii(text) ? text : QLatin1String(nullptr);
    }

    sqlite3_stmt* m_statement;
    // Rows that were written together share one time, which is then not parsed for each of them.
    mutable std::string m_timeText;
    mutable QDateTime m_time;
};

class SqliteRowReader final : public Interfaces::IRowReader
{
public:
    /// Makes the first step, which is the one that fails when the select cannot be run.
    explicit SqliteRowReader(Statement statement)
        : m_statement(std::move(statement))
        , m_noQuery(static_cast<QSqlResult*>(nullptr))
        , m_values(m_noQuery, m_statement.get())
    {
        step();
        if (m_error.isValid())
            throwStatementError(m_error);
    }

    bool next() override
    {
        if (m_onRow && !std::exchange(m_beforeFirst, false))
            step();
        return m_onRow;
    }

    const Interfaces::IValueConverter& row() const override { return m_values; }
    QString error() const override { return m_error.text(); }
    bool isUnavailable() const override { return Backend::isUnavailable(m_error); }

private:
    void step()
    {
        const int status = sqlite3_step(m_statement.get());
        m_onRow = status == SQLITE_ROW;
        if (status != SQLITE_ROW && status != SQLITE_DONE)
            m_error = errorOfStep(m_statement.get());
    }

    Statement m_statement;
    QSqlQuery m_noQuery; // The values are not those of a query of Qt.
    ColumnValues m_values;
    QSqlError m_error;
    bool m_beforeFirst = true;
    bool m_onRow = false;
};

} // namespace

std::unique_ptr<Interfaces::IRowReader> SqliteBackend::reader(const QSqlDriver& driver, const QString& select) const
{
    sqlite3* const database = sqliteDatabase(driver);
    if (database == nullptr)
        return nullptr;
    const QByteArray text = select.toUtf8();
    sqlite3_stmt* statement = nullptr;
    const char* rest = nullptr;
    if (sqlite3_prepare_v2(database, text.constData(), text.size() + 1, &statement, &rest) != SQLITE_OK)
        throwStatementError(sqliteError(database, "Unable to execute statement"));
    if (statement == nullptr)
        return nullptr; // nothing but blanks and comments
    Statement prepared(statement, &sqlite3_finalize);
    if (!QByteArray::fromRawData(rest, static_cast<int>(text.constEnd() - rest)).trimmed().isEmpty())
        throwStatementError(QStringLiteral("Unable to execute multiple statements at a time"));
    return std::make_unique<SqliteRowReader>(std::move(prepared));
}

} // namespace DataAccess::Database
