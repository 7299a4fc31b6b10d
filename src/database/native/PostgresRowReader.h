#pragma once

#include "database/IRowReader.h"

#include <QSqlQuery>

#include <memory>

namespace DataAccess::Database::Native {

/**
 * The rows of @p query, a select that was just run and whose result is not read forwards only, read from PostgreSQL's
 * own result; null when that cannot be done.
 */
std::unique_ptr<Interfaces::IRowReader> postgresRowReader(const QSqlQuery& query);

} // namespace DataAccess::Database::Native
