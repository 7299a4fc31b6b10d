#pragma once

#include "bench/TextForms.h"
#include "database/IConfig.h"

#include <cmath>
#include <libpq-fe.h>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace Bench {

/// PostgreSQL's own interface, with what is needed to use it for a kind of entities.
class BarePostgres
{
public:
    using Result = std::unique_ptr<PGresult, void (*)(PGresult*)>;

    /// A prepared statement, as a row to be written. Columns count from 0.
    class Statement
    {
    public:
        Statement(PGconn* connection, const std::string& text, int parameters);

        void execute();

        void text(int column, const QString& value) { set(column, value.toStdString()); }
        void id(int column, const QUuid& value) { set(column, value.toByteArray().toStdString()); }
        void integer(int column, int value) { set(column, std::to_string(value)); }
        void flag(int column, bool value) { set(column, value ? "t" : "f"); }
        void number(int column, double value)
        {
            char text[32];
            *std::to_chars(text, text + sizeof text - 1, value).ptr = '\0';
            set(column, text);
        }
        void date(int column, const QDate& value) { set(column, std::string(TimeText(value).date())); }
        void time(int column, const QDateTime& value) { set(column, TimeText(value).text); }

    private:
        void set(int column, std::string value) { m_values[static_cast<std::size_t>(column)] = std::move(value); }

        PGconn* m_connection;
        std::vector<std::string> m_values;
        std::vector<const char*> m_pointers;
    };

    /// One row of a result, to be read.
    class Row
    {
    public:
        Row(const PGresult* result, int row)
            : m_result(result)
            , m_row(row)
        {}

        QString text(int column) const
        {
            const std::string_view value = view(column);
            return QString::fromUtf8(value.data(), static_cast<int>(value.size()));
        }
        QUuid id(int column) const { return parseId(view(column)); }
        int integer(int column) const { return parseNumber<int>(view(column)); }
        bool flag(int column) const { return *PQgetvalue(m_result, m_row, column) == 't'; }
        double number(int column) const
        {
            return PQgetisnull(m_result, m_row, column) != 0 ? std::numeric_limits<double>::quiet_NaN()
                                                             : parseNumber<double>(view(column));
        }
        QDate date(int column) const { return parseDate(view(column)); }
        QDateTime time(int column) const { return parseTime(view(column)); }

    private:
        std::string_view view(int column) const
        {
            return {PQgetvalue(m_result, m_row, column),
                    static_cast<std::size_t>(PQgetlength(m_result, m_row, column))};
        }

        const PGresult* m_result;
        int m_row;
    };

    explicit BarePostgres(DataAccess::Interfaces::IConfig& config);
    ~BarePostgres() { PQfinish(m_connection); }
    BarePostgres(const BarePostgres&) = delete;
    BarePostgres& operator=(const BarePostgres&) = delete;

    /// Runs statements without a result.
    void run(const std::string& statements) { query(statements); }
    Statement prepare(const std::string& text, int parameters) { return {m_connection, text, parameters}; }
    /// Calls @p consume with each row that @p text selects.
    template <typename Consume>
    void select(const std::string& text, const Consume& consume)
    {
        const Result result = query(text);
        const int rows = PQntuples(result.get());
        for (int row = 0; row < rows; ++row)
            consume(Row(result.get(), row), rows);
    }
    static std::string placeholder(int column) { return "$" + std::to_string(column + 1); }

private:
    Result query(const std::string& text);

    PGconn* m_connection;
};

} // namespace Bench
