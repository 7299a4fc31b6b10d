#pragma once

#include "database/IRowWriter.h"

#include <QSqlQuery>

#include <functional>
#include <memory>

namespace DataAccess::Database {
class Session;
}

namespace DataAccess::Database::Native {

/**
 * Runs @p statement, with named parameters, on the connection of @p query, which is not prepared, and calls @p written
 * after each row; null when that cannot be done. Sends some hundred rows ahead, through PostgreSQL's own interface,
 * instead of waiting for the server's answer to each; outside a transaction one row. @p session is told meanwhile, and
 * @p makeReady is called before rows are sent: it throws when none may be written.
 */
std::unique_ptr<Interfaces::IRowWriter> postgresRowWriter(const QSqlQuery& query, const QString& statement,
                                                          std::function<void()> written, Session& session,
                                                          std::function<void()> makeReady);

} // namespace DataAccess::Database::Native
