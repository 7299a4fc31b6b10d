#pragma once

#include "bench/TextForms.h"
#include "database/IConfig.h"

#include <cmath>
#include <limits>
#include <sqlite3.h>
#include <string>

namespace Bench {

/// SQLite's own interface, with what is needed to use it for a kind of entities.
class BareSqlite
{
public:
    /// A statement, as a row to be written and as a row that was read. Columns count from 0.
    class Statement
    {
    public:
        Statement(sqlite3* database, const std::string& text);
        ~Statement() { sqlite3_finalize(m_statement); }
        Statement(const Statement&) = delete;
        Statement& operator=(const Statement&) = delete;

        /// Steps to the next row; false at the end.
        bool next();
        /// Runs a statement without a result, and makes it ready to run again.
        void execute();

        void text(int column, const QString& value) { bind(column, value.toUtf8()); }
        void id(int column, const QUuid& value) { bind(column, value.toByteArray()); }
        void integer(int column, int value) { sqlite3_bind_int(m_statement, column + 1, value); }
        void flag(int column, bool value) { sqlite3_bind_int(m_statement, column + 1, value ? 1 : 0); }
        void number(int column, double value) { sqlite3_bind_double(m_statement, column + 1, value); }
        void date(int column, const QDate& value) { bind(column, TimeText(value).date()); }
        void time(int column, const QDateTime& value) { bind(column, TimeText(value).time()); }

        QString text(int column) const
        {
            const std::string_view value = view(column);
            return QString::fromUtf8(value.data(), static_cast<int>(value.size()));
        }
        QUuid id(int column) const { return parseId(view(column)); }
        int integer(int column) const { return sqlite3_column_int(m_statement, column); }
        bool flag(int column) const { return sqlite3_column_int(m_statement, column) != 0; }
        double number(int column) const
        {
            return sqlite3_column_type(m_statement, column) == SQLITE_NULL ? std::numeric_limits<double>::quiet_NaN()
                                                                           : sqlite3_column_double(m_statement, column);
        }
        QDate date(int column) const { return parseDate(view(column)); }
        QDateTime time(int column) const { return parseTime(view(column)); }

    private:
        void bind(int column, std::string_view value)
        {
            sqlite3_bind_text(m_statement, column + 1, value.data(), static_cast<int>(value.size()), SQLITE_TRANSIENT);
        }
        void bind(int column, const QByteArray& value)
        {
            bind(column, std::string_view(value.constData(), static_cast<std::size_t>(value.size())));
        }
        std::string_view view(int column) const
        {
            const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(m_statement, column));
            return text == nullptr
                       ? std::string_view()
                       : std::string_view(text, static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column)));
        }

        sqlite3_stmt* m_statement = nullptr;
    };

    explicit BareSqlite(DataAccess::Interfaces::IConfig& config);
    ~BareSqlite() { sqlite3_close(m_database); }
    BareSqlite(const BareSqlite&) = delete;
    BareSqlite& operator=(const BareSqlite&) = delete;

    /// Runs statements without a result.
    void run(const std::string& statements);
    Statement prepare(const std::string& text, int /*parameters*/) { return {m_database, text}; }
    /// Calls @p consume with each row that @p text selects.
    template <typename Consume>
    void select(const std::string& text, const Consume& consume)
    {
        Statement statement(m_database, text);
        while (statement.next())
            consume(std::as_const(statement), -1);
    }
    static std::string placeholder(int column) { return "?" + std::to_string(column + 1); }

private:
    sqlite3* m_database = nullptr;
};

} // namespace Bench
