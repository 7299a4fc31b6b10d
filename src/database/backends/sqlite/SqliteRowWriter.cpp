#include "database/IRowWriter.h"
#include "database/backends/ParameterNames.h"
#include "database/backends/sqlite/SqliteBackend.h"
#include "database/private/StatementError.h"

#include <QSqlQuery>
#include <QUuid>
#include <QVariant>

#include <sqlite3.h>
#include <utility>
#include <vector>

namespace DataAccess::Database {

namespace {

ParameterNames namesOf(sqlite3_stmt* statement)
{
    std::vector<QString> names;
    const int count = sqlite3_bind_parameter_count(statement);
    names.reserve(static_cast<std::size_t>(count));
    for (int place = 1; place <= count; ++place)
        names.push_back(QString::fromUtf8(sqlite3_bind_parameter_name(statement, place)));
    return ParameterNames(std::move(names));
}

/// Binds to the parameters of a statement what Qt's driver would bind.
class ParameterValues final : public Converter::SQLite3ValueConverter
{
public:
    using SQLite3ValueConverter::bindValue;

    ParameterValues(QSqlQuery& query, sqlite3_stmt* statement)
        : SQLite3ValueConverter(query)
        , m_statement(statement)
        , m_names(namesOf(statement))
        , m_bytes(m_names.count())
    {}

    void bindValue(const QString& placeholder, const QUuid& value) override
    {
        const std::size_t place = m_names.placeOf(placeholder);
        m_bytes[place] = value.toByteArray();
        check(bindText(place));
    }

    /// Throws ExecutionException when a parameter was never bound.
    void requireAll() const { m_names.requireAll(); }

protected:
    void bind(const QString& placeholder, const QVariant& value) override
    {
        const std::size_t place = m_names.placeOf(placeholder);
        const int number = static_cast<int>(place) + 1;
        if (value.isNull()) {
            check(sqlite3_bind_null(m_statement, number));
            return;
        }
        switch (static_cast<QMetaType::Type>(value.type())) {
        case QMetaType::Bool:
        case QMetaType::Int:
        case QMetaType::LongLong:
            check(sqlite3_bind_int64(m_statement, number, value.toLongLong()));
            break;
        case QMetaType::Double:
            check(sqlite3_bind_double(m_statement, number, value.toDouble()));
            break;
        case QMetaType::QByteArray:
            m_bytes[place] = value.toByteArray();
            check(sqlite3_bind_blob64(m_statement, number, m_bytes[place].constData(),
                                      static_cast<sqlite3_uint64>(m_bytes[place].size()), SQLITE_STATIC));
            break;
        default: {
            // A leading byte order mark is doubled for Qt's driver, where it counts as no part of the text.
            const QString text = value.toString();
            m_bytes[place] = text.startsWith(QChar(QChar::ByteOrderMark)) ? text.midRef(1).toUtf8() : text.toUtf8();
            check(bindText(place));
        }
        }
    }

private:
    int bindText(std::size_t place)
    {
        return sqlite3_bind_text64(m_statement, static_cast<int>(place) + 1, m_bytes[place].constData(),
                                   static_cast<sqlite3_uint64>(m_bytes[place].size()), SQLITE_STATIC, SQLITE_UTF8);
    }

    void check(int status) const
    {
        if (status != SQLITE_OK)
            throwStatementError(sqliteError(sqlite3_db_handle(m_statement), "Unable to bind parameters"));
    }

    sqlite3_stmt* m_statement;
    ParameterNames m_names;
    std::vector<QByteArray> m_bytes; // what the statement's texts and byte arrays refer to
};

class SqliteRowWriter final : public Interfaces::IRowWriter
{
public:
    SqliteRowWriter(const QSqlQuery& query, sqlite3_stmt* statement, std::function<void()> written,
                    std::function<void()> makeReady)
        : m_query(query)
        , m_statement(statement)
        , m_values(m_query, statement)
        , m_written(std::move(written))
        , m_makeReady(std::move(makeReady))
    {}

    Interfaces::IValueConverter& values() override { return m_values; }

    void run() override
    {
        m_values.requireAll();
        // Within a transaction there is nothing to be made ready; after one that was lost the row must not stay.
        if (sqlite3_get_autocommit(sqlite3_db_handle(m_statement)) != 0)
            m_makeReady();
        const int status = sqlite3_step(m_statement);
        if (status != SQLITE_DONE && status != SQLITE_ROW)
            throwStatementError(errorOfStep(m_statement));
        sqlite3_reset(m_statement);
        m_written();
    }

    void finish() override {}

    bool touchedRow() const override { return sqlite3_changes(sqlite3_db_handle(m_statement)) != 0; }

private:
    QSqlQuery m_query; // owns the statement
    sqlite3_stmt* m_statement;
    ParameterValues m_values;
    std::function<void()> m_written;
    std::function<void()> m_makeReady;
};

} // namespace

std::unique_ptr<Interfaces::IRowWriter> SqliteBackend::writer(QSqlQuery& query, const QString& statement,
                                                              const std::function<void()>& written, Session&,
                                                              const std::function<void()>& makeReady) const
{
    if (!query.prepare(statement))
        throw failureOf(query);
    sqlite3_stmt* const prepared = sqliteStatement(query);
    return prepared != nullptr ? std::make_unique<SqliteRowWriter>(query, prepared, written, makeReady) : nullptr;
}

} // namespace DataAccess::Database
