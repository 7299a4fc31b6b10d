#pragma once

#include "bench/TextForms.h"
#include "database/IConfig.h"

#include <cstddef>
#include <libpq-fe.h>
#include <memory>
#include <string>
#include <vector>

namespace Bench {

/// PostgreSQL's own interface, with what is needed to use it for a kind. It waits for the answer to each row that is
/// written. Any failure ends the process.
class BarePostgres
{
    using Result = std::unique_ptr<PGresult, void (*)(PGresult*)>;

public:
    /// A prepared statement, as a row to be written. Columns count from 0.
    class Statement
    {
    public:
        Statement(PGconn* connection, const std::string& text)
            : m_connection(connection)
        {
            // Without a name, a statement takes the place of the one before it.
            checked(connection, PQprepare(connection, "", text.c_str(), 0, nullptr));
            const Result description = checked(connection, PQdescribePrepared(connection, ""));
            const auto columns = static_cast<std::size_t>(PQnparams(description.get()));
            m_values.resize(columns);
            m_texts.resize(columns);
            m_pointers.resize(columns);
        }

        void execute()
        {
            checked(m_connection, PQexecPrepared(m_connection, "", static_cast<int>(m_pointers.size()),
                                                 m_pointers.data(), nullptr, nullptr, 0));
        }

        void text(int column, const QString& value)
        {
            m_texts[static_cast<std::size_t>(column)] = value.toUtf8();
            m_pointers[static_cast<std::size_t>(column)] = m_texts[static_cast<std::size_t>(column)].constData();
        }
        void id(int column, const QUuid& value) { end(column, printId(buffer(column), value)); }
        void integer(int column, int value) { print(column, value); }
        void flag(int column, bool value) { m_pointers[static_cast<std::size_t>(column)] = value ? "t" : "f"; }
        void number(int column, double value) { print(column, value); }
        void date(int column, const QDate& value) { end(column, printDate(buffer(column), value)); }
        void time(int column, const QDateTime& value) { end(column, printTime(buffer(column), value)); }

    private:
        using Value = std::array<char, idSize + 1>;

        char* buffer(int column) { return m_values[static_cast<std::size_t>(column)].data(); }
        template <typename Number>
        void print(int column, Number value)
        {
            char* const text = buffer(column);
            end(column, static_cast<int>(std::to_chars(text, text + idSize, value).ptr - text));
        }
        void end(int column, int size)
        {
            buffer(column)[size] = '\0';
            m_pointers[static_cast<std::size_t>(column)] = buffer(column);
        }

        PGconn* m_connection;
        std::vector<Value> m_values;
        std::vector<QByteArray> m_texts;
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
        double number(int column) const { return parseNumber<double>(view(column)); }
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

    explicit BarePostgres(DataAccess::Interfaces::IConfig& config)
    {
        const QByteArray values[] = {config.HostName().toUtf8(), QByteArray::number(config.Port()),
                                     config.DatabaseName().toUtf8(), config.UserName().toUtf8(),
                                     config.Password().toUtf8()};
        const char* const keys[] = {"host", "port", "dbname", "user", "password", nullptr};
        const char* const texts[] = {values[0].constData(), values[1].constData(), values[2].constData(),
                                     values[3].constData(), values[4].constData(), nullptr};
        m_connection = PQconnectdbParams(keys, texts, 0);
        if (PQstatus(m_connection) != CONNECTION_OK)
            qFatal("%s", PQerrorMessage(m_connection));
    }
    ~BarePostgres() { PQfinish(m_connection); }
    BarePostgres(const BarePostgres&) = delete;
    BarePostgres& operator=(const BarePostgres&) = delete;

    /// Runs statements without a result.
    void run(const std::string& statements) { query(statements); }
    Statement prepare(const std::string& text) { return {m_connection, text}; }
    /// Calls @p consume with each row that @p text selects.
    template <typename Consume>
    void select(const std::string& text, const Consume& consume)
    {
        const Result result = query(text);
        for (int row = 0; row < PQntuples(result.get()); ++row)
            consume(Row(result.get(), row));
    }
    static std::string placeholder(int column) { return "$" + std::to_string(column + 1); }

private:
    static Result checked(PGconn* connection, PGresult* result)
    {
        const ExecStatusType status = PQresultStatus(result);
        if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK)
            qFatal("%s", PQerrorMessage(connection));
        return {result, &PQclear};
    }
    Result query(const std::string& text) { return checked(m_connection, PQexec(m_connection, text.c_str())); }

    PGconn* m_connection;
};

} // namespace Bench
