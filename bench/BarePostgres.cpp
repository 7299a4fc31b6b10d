#include "bench/BarePostgres.h"

#include <QtGlobal>

namespace Bench {

namespace {

BarePostgres::Result checked(PGconn* connection, PGresult* result)
{
    const ExecStatusType status = PQresultStatus(result);
    if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK)
        qFatal("%s", PQerrorMessage(connection));
    return {result, &PQclear};
}

} // namespace

BarePostgres::BarePostgres(DataAccess::Interfaces::IConfig& config)
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

BarePostgres::Result BarePostgres::query(const std::string& text)
{
    return checked(m_connection, PQexec(m_connection, text.c_str()));
}

BarePostgres::Statement::Statement(PGconn* connection, const std::string& text, int parameters)
    : m_connection(connection)
    , m_values(static_cast<std::size_t>(parameters))
    , m_pointers(static_cast<std::size_t>(parameters))
{
    // Without a name, a statement takes the place of the one before it.
    checked(m_connection, PQprepare(m_connection, "", text.c_str(), 0, nullptr));
}

void BarePostgres::Statement::execute()
{
    for (std::size_t i = 0; i < m_values.size(); ++i)
        m_pointers[i] = m_values[i].c_str();
    checked(m_connection, PQexecPrepared(m_connection, "", static_cast<int>(m_pointers.size()), m_pointers.data(),
                                         nullptr, nullptr, 0));
}

} // namespace Bench
