#include "database/DbException.h"
#include "database/IRowWriter.h"
#include "database/LoggingCategories.h"
#include "database/backends/Backend.h"
#include "database/backends/postgres/PostgresBackend.h"
#include "database/backends/postgres/PostgresConnection.h"
#include "database/backends/postgres/PostgresParameters.h"
#include "database/private/SharedConnection.h"
#include "database/private/StatementError.h"

#include <QSqlQuery>

#include <algorithm>
#include <utility>
#include <vector>

namespace DataAccess::Database {

namespace {

constexpr int s_rowsAhead = 256;
constexpr std::size_t s_bytesAhead = 1 << 20;
constexpr const char* s_notRun = "Unable to create query";

/// Sends some hundred rows ahead instead of waiting for the server's answer to each; outside a transaction one row.
class PostgresRowWriter final : public Interfaces::IRowWriter, private RowsUnderWay
{
public:
    PostgresRowWriter(const QSqlQuery& query, NumberedStatement statement, std::function<void()> written,
                      Session& session, std::function<void()> makeReady)
        : m_query(query)
        , m_statement(statement.text.toUtf8())
        , m_values(m_query, std::move(statement.names))
        , m_written(std::move(written))
        , m_session(session)
        , m_makeReady(std::move(makeReady))
    {}
    PostgresRowWriter(const PostgresRowWriter&) = delete;
    PostgresRowWriter& operator=(const PostgresRowWriter&) = delete;

    ~PostgresRowWriter() override
    {
        const bool isTold = m_failure.isValid();
        try {
            receiveAnswers();
            if (m_failure.isValid() && !isTold)
                qCWarning(lcDatabase) << Q_FUNC_INFO << Backend::errorText(m_failure);
        } catch (const Exceptions::DbException& error) {
            qCWarning(lcDatabase) << Q_FUNC_INFO << error.what();
        }
    }

    Interfaces::IValueConverter& values() override { return m_values; }

    void run() override
    {
        rethrowFailure();
        m_values.requireAll();
        // Values of other types need the statement prepared anew.
        if (m_open && m_values.types() != m_types)
            finish();
        if (!m_open)
            begin();
        const std::vector<const char*> texts = m_values.texts();
        requireSent(PQsendQueryPrepared(m_connection, "", static_cast<int>(texts.size()), texts.data(), nullptr,
                                        nullptr, 0) == 1);
        m_bytes += m_values.size();
        if (++m_rows == m_rowsAhead || m_bytes > s_bytesAhead)
            finish();
    }

    void finish() override
    {
        const bool isTold = m_failure.isValid();
        receiveAnswers();
        if (!isTold && m_failure.isValid())
            throwStatementError(m_failure);
        rethrowFailure();
    }

    bool touchedRow() const override { return m_touched[m_told]; }

private:
    void settle() override { finish(); }

    void abandon() noexcept override
    {
        m_written = [] {};
        receiveAnswers();
        if (!m_failure.isValid())
            m_failure = QSqlError(QString(), QStringLiteral("The rows were given up together with their transaction"));
    }

    /// Throws the failure that there was: nothing may be written after it.
    void rethrowFailure() const
    {
        if (m_failure.isValid())
            throw Exceptions::ExecutionException(Backend::errorText(m_failure).toLocal8Bit().constData(),
                                                 Backend::isUnavailable(m_failure));
    }

    /// Prepares the statement for the rows to be sent. It has no name, so that there is nothing to be freed.
    void begin()
    {
        m_makeReady();
        m_connection = postgresConnection(m_query.driver()); // which may be another one by now
        requireSent(m_connection != nullptr && PQpipelineStatus(m_connection) == PQ_PIPELINE_OFF);
        // What is left of a result that was not read to its end, nobody will read.
        while (PostgresResult(PQgetResult(m_connection), &PQclear)) {
        }
        // Without a transaction the server would keep all that is sent at once, or nothing.
        m_rowsAhead = PQtransactionStatus(m_connection) == PQTRANS_IDLE ? 1 : s_rowsAhead;
        requireSent(PQenterPipelineMode(m_connection) == 1);
        m_open = true;
        m_session.setRows(this);
        m_types = m_values.types();
        m_bytes = 0;
        requireSent(PQsendPrepare(m_connection, "", m_statement.constData(), static_cast<int>(m_types.size()),
                                  m_types.data()) == 1);
    }

    /// Waits for the rows under way, keeps what failed, and tells of the rows that are written.
    void receiveAnswers()
    {
        if (!std::exchange(m_open, false))
            return;
        m_session.setRows(nullptr);
        const auto sent = static_cast<std::size_t>(std::exchange(m_rows, 0));
        QSqlError failure = PQpipelineSync(m_connection) == 1 ? receiveResult("Unable to prepare statement")
                                                              : postgresError(m_connection, nullptr, s_notRun);
        m_touched.clear(); // of the preparation
        while (!failure.isValid() && m_touched.size() < sent)
            failure = receiveResult(s_notRun);
        std::size_t done = m_touched.size();
        const QSqlError end = leavePipeline();
        if (!failure.isValid() && end.isValid()) {
            failure = end;
            done = std::max<std::size_t>(sent, 1) - 1;
        }
        if (!m_failure.isValid())
            m_failure = failure;
        for (m_told = 0; m_told < done; ++m_told)
            m_written();
    }

    /// Receives the result of the first statement that has none yet. Gives its failure; not valid for a success.
    QSqlError receiveResult(const char* what)
    {
        const PostgresResult result(PQgetResult(m_connection), &PQclear);
        const ExecStatusType status = PQresultStatus(result.get());
        if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK)
            return postgresError(m_connection, result.get(), what);
        m_touched.push_back(qstrcmp(PQcmdTuples(result.get()), "0") != 0);
        PQclear(PQgetResult(m_connection)); // null, which ends the results of one statement
        return {};
    }

    /// Receives what is left of the results. Gives the failure among them, be it that the last one is missing because
    /// the connection is lost; not valid when all of them are fine.
    QSqlError leavePipeline()
    {
        QSqlError failure;
        ExecStatusType status = PGRES_COMMAND_OK;
        for (int nulls = 0; nulls < 2 && status != PGRES_PIPELINE_SYNC;) {
            const PostgresResult result(PQgetResult(m_connection), &PQclear);
            nulls = result ? 0 : nulls + 1;
            status = PQresultStatus(result.get());
            // Without a transaction the server commits at the end, and what it checks only then may fail.
            if (status == PGRES_FATAL_ERROR && result && !failure.isValid())
                failure = postgresError(m_connection, result.get(), s_notRun);
        }
        const bool isLeft = PQexitPipelineMode(m_connection) == 1 && status == PGRES_PIPELINE_SYNC;
        return isLeft || failure.isValid() ? failure : postgresError(m_connection, nullptr, s_notRun);
    }

    void requireSent(bool sent)
    {
        if (sent)
            return;
        m_failure = postgresError(m_connection, nullptr, s_notRun);
        throwStatementError(m_failure);
    }

    QSqlQuery m_query;
    PGconn* m_connection = nullptr;
    QByteArray m_statement;
    PostgresParameters m_values;
    std::function<void()> m_written;
    Session& m_session;
    std::function<void()> m_makeReady;
    std::vector<Oid> m_types;    // what the rows sent are prepared for
    std::vector<bool> m_touched; // of each row answered in the last receiveAnswers(): whether it is one of the table
    std::size_t m_told = 0;      // the place there of the row that m_written is being called for
    int m_rowsAhead = 1;
    int m_rows = 0;      // sent, and not yet answered
    bool m_open = false; // between begin() and receiveAnswers()
    std::size_t m_bytes = 0;
    QSqlError m_failure; // the first
};

} // namespace

std::unique_ptr<Interfaces::IRowWriter> PostgresBackend::writer(QSqlQuery& query, const QString& statement,
                                                                const std::function<void()>& written, Session& session,
                                                                const std::function<void()>& makeReady) const
{
    if (postgresConnection(query.driver()) == nullptr)
        return nullptr;
    return std::make_unique<PostgresRowWriter>(query, NumberedStatement(statement), written, session, makeReady);
}

} // namespace DataAccess::Database
