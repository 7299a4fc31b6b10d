#pragma once

#include "bench/TextForms.h"
#include "database/IConfig.h"

#include <cstddef>
#include <limits>
#include <sqlite3.h>
#include <string>
#include <vector>

namespace Bench {

/// SQLite's own interface, with what is needed to use it for a kind. Any failure ends the process.
class BareSqlite
{
public:
    /// A statement, as a row to be written and as a row that was read. Columns count from 0.
    class Statement
    {
    public:
        Statement(sqlite3* database, const std::string& text)
        {
            check(database,
                  sqlite3_prepare_v2(database, text.c_str(), static_cast<int>(text.size()) + 1, &m_statement, nullptr));
            m_texts.resize(static_cast<std::size_t>(sqlite3_bind_parameter_count(m_statement)));
        }
        ~Statement() { sqlite3_finalize(m_statement); }
        Statement(const Statement&) = delete;
        Statement& operator=(const Statement&) = delete;

        /// Steps to the next row; false at the end.
        bool next()
        {
            const int result = sqlite3_step(m_statement);
            if (result != SQLITE_ROW && result != SQLITE_DONE)
                check(sqlite3_db_handle(m_statement), result);
            return result == SQLITE_ROW;
        }
        /// Runs a statement without a result, and makes it ready to run again.
        void execute()
        {
            next();
            sqlite3_reset(m_statement);
        }

        void text(int column, const QString& value)
        {
            const QByteArray bytes = value.toUtf8();
            sqlite3_bind_text(m_statement, column + 1, bytes.constData(), bytes.size(), SQLITE_TRANSIENT);
        }
        void id(int column, const QUuid& value) { bind(column, printId(buffer(column), value)); }
        void integer(int column, int value) { sqlite3_bind_int(m_statement, column + 1, value); }
        void flag(int column, bool value) { sqlite3_bind_int(m_statement, column + 1, value ? 1 : 0); }
        void number(int column, double value) { sqlite3_bind_double(m_statement, column + 1, value); }
        void date(int column, const QDate& value) { bind(column, printDate(buffer(column), value)); }
        void time(int column, const QDateTime& value) { bind(column, printTime(buffer(column), value)); }

        QString text(int column) const
        {
            const std::string_view value = view(column);
            return QString::fromUtf8(value.data(), static_cast<int>(value.size()));
        }
        QUuid id(int column) const { return parseId(view(column)); }
        int integer(int column) const { return sqlite3_column_int(m_statement, column); }
        bool flag(int column) const { return sqlite3_column_int(m_statement, column) != 0; }
        double number(int column) const { return sqlite3_column_double(m_statement, column); }
        QDate date(int column) const { return parseDate(view(column)); }
        QDateTime time(int column) const { return parseTime(view(column)); }

    private:
        char* buffer(int column) { return m_texts[static_cast<std::size_t>(column)].data(); }
        void bind(int column, int size)
        {
            sqlite3_bind_text(m_statement, column + 1, buffer(column), size, SQLITE_STATIC);
        }
        std::string_view view(int column) const
        {
            const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(m_statement, column));
            return {text, static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column))};
        }

        sqlite3_stmt* m_statement = nullptr;
        std::vector<std::array<char, idSize>> m_texts; // what is bound, until the statement has run
    };

    explicit BareSqlite(DataAccess::Interfaces::IConfig& config)
    {
        const QByteArray path = config.DatabaseName().toUtf8();
        // Without a lock around each call, as Qt opens it.
        check(m_database, sqlite3_open_v2(path.constData(), &m_database,
                                          SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr));
        sqlite3_busy_timeout(m_database, 5000);
    }
    ~BareSqlite() { sqlite3_close(m_database); }
    BareSqlite(const BareSqlite&) = delete;
    BareSqlite& operator=(const BareSqlite&) = delete;

    /// Runs statements without a result.
    void run(const std::string& statements)
    {
        check(m_database, sqlite3_exec(m_database, statements.c_str(), nullptr, nullptr, nullptr));
    }
    Statement prepare(const std::string& text) { return {m_database, text}; }
    /// Calls @p consume with each row that @p text selects.
    template <typename Consume>
    void select(const std::string& text, const Consume& consume)
    {
        Statement statement(m_database, text);
        while (statement.next())
            consume(statement);
    }
    static std::string placeholder(int column) { return "?" + std::to_string(column + 1); }

private:
    static void check(sqlite3* database, int result)
    {
        if (result != SQLITE_OK)
            qFatal("%s", sqlite3_errmsg(database));
    }

    sqlite3* m_database = nullptr;
};

} // namespace Bench
