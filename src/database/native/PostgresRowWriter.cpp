#include "database/native/PostgresRowWriter.h"

#include "database/DbException.h"
#include "database/LoggingCategories.h"
#include "database/StatementError.h"
#include "database/native/NumberedStatement.h"
#include "database/native/PostgresConnection.h"
#include "database/native/PostgresParameters.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace DataAccess::Database::Native {

namespace {

constexpr int s_rowsAhead = 256;
constexpr std::size_t s_bytesAhead = 1 << 20;
constexpr const char* s_notRun = "Unable to create query";

class PostgresRowWriter final : public Interfaces::IRowWriter
{
public:
    PostgresRowWriter(const QSqlQuery& query, PGconn* connection, NumberedStatement statement,
                      std::function<void()> written)
        : m_query(query)
        , m_connection(connection)
        , m_statement(statement.text.toUtf8())
        , m_values(m_query, std::move(statement.names))
        , m_written(std::move(written))
    {}
    PostgresRowWriter(const PostgresRowWriter&) = delete;
    PostgresRowWriter& operator=(const PostgresRowWriter&) = delete;

    ~PostgresRowWriter() override
    {
        try {
            const QString failure = settle();
            if (!failure.isEmpty() && !m_failed)
                qCWarning(lcDatabase) << Q_FUNC_INFO << failure;
        } catch (const Exceptions::DbException& error) {
            qCWarning(lcDatabase) << Q_FUNC_INFO << error.what();
        }
    }

    Interfaces::IValueConverter& values() override { return m_values; }

    void run() override
    {
        m_values.requireAll();
        // Values of other types need the statement prepared anew.
        if (m_open && m_values.types() != m_types)
            finish();
        if (!m_open)
            begin();
        const std::vector<const char*> texts = m_values.texts();
        require(PQsendQueryPrepared(m_connection, "", static_cast<int>(texts.size()), texts.data(), nullptr, nullptr,
                                    0) == 1);
        m_bytes += m_values.size();
        if (++m_rows == s_rowsAhead || m_bytes > s_bytesAhead)
            finish();
    }

    void finish() override
    {
        const QString failure = settle();
        if (!failure.isEmpty())
            fail(failure);
    }

    bool touchedRow() const override { return m_touched[m_told]; }

private:
    /// Prepares the statement for the rows to be sent. It has no name, so that there is nothing to be freed.
    void begin()
    {
        require(PQpipelineStatus(m_connection) == PQ_PIPELINE_OFF);
        // What a query has not read, nobody will.
        while (PostgresResult(PQgetResult(m_connection), &PQclear)) {
        }
        require(PQenterPipelineMode(m_connection) == 1);
        m_open = true;
        m_types = m_values.types();
        m_bytes = 0;
        require(PQsendPrepare(m_connection, "", m_statement.constData(), static_cast<int>(m_types.size()),
                              m_types.data()) == 1);
    }

    /// Waits for the rows under way. Gives the text of what failed; empty when nothing did.
    QString settle()
    {
        if (!std::exchange(m_open, false))
            return {};
        const auto sent = static_cast<std::size_t>(std::exchange(m_rows, 0));
        QString failure = PQpipelineSync(m_connection) == 1 ? takeResult("Unable to prepare statement")
                                                            : postgresErrorText(m_connection, nullptr, s_notRun);
        m_touched.clear(); // of the preparation
        while (failure.isEmpty() && m_touched.size() < sent)
            failure = takeResult(s_notRun);
        std::size_t done = m_touched.size();
        if (!leavePipeline() && failure.isEmpty()) {
            failure = postgresErrorText(m_connection, nullptr, s_notRun);
            done = std::max<std::size_t>(sent, 1) - 1;
        }
        for (m_told = 0; m_told < done; ++m_told)
            m_written();
        return failure;
    }

    /// Takes the result of the first statement that has none yet. Gives the text of its failure; empty for a success.
    QString takeResult(const char* failure)
    {
        const PostgresResult result(PQgetResult(m_connection), &PQclear);
        const ExecStatusType status = PQresultStatus(result.get());
        if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK)
            return postgresErrorText(m_connection, result.get(), failure);
        m_touched.push_back(qstrcmp(PQcmdTuples(result.get()), "0") != 0);
        PQclear(PQgetResult(m_connection)); // null, which ends the results of one statement
        return {};
    }

    /// Takes what is left of the results. False when the last one is missing: the connection is lost.
    bool leavePipeline()
    {
        ExecStatusType status = PGRES_COMMAND_OK;
        for (int nulls = 0; nulls < 2 && status != PGRES_PIPELINE_SYNC;) {
            const PostgresResult result(PQgetResult(m_connection), &PQclear);
            nulls = result ? 0 : nulls + 1;
            status = PQresultStatus(result.get());
        }
        return PQexitPipelineMode(m_connection) == 1 && status == PGRES_PIPELINE_SYNC;
    }

    void require(bool sent)
    {
        if (!sent)
            fail(postgresErrorText(m_connection, nullptr, s_notRun));
    }

    [[noreturn]] void fail(const QString& failure)
    {
        m_failed = true;
        throwStatementError(failure);
    }

    QSqlQuery m_query;
    PGconn* m_connection;
    QByteArray m_statement;
    PostgresParameters m_values;
    std::function<void()> m_written;
    std::vector<Oid> m_types;    // what the rows sent are prepared for
    std::vector<bool> m_touched; // of each row answered since the last settle(): whether it is one of the table
    std::size_t m_told = 0;      // the place there of the row being told as written
    int m_rows = 0;              // sent, and not yet answered
    bool m_open = false;         // between begin() and settle()
    bool m_failed = false;       // which was told then
    std::size_t m_bytes = 0;
};

} // namespace

std::unique_ptr<Interfaces::IRowWriter> postgresRowWriter(const QSqlQuery& query, const QString& statement,
                                                          std::function<void()> written)
{
    PGconn* const connection = postgresConnection(query.driver());
    if (connection == nullptr)
        return nullptr;
    return std::make_unique<PostgresRowWriter>(query, connection, NumberedStatement(statement), std::move(written));
}

} // namespace DataAccess::Database::Native
