#pragma once

#include "database/IRowReader.h"

#include <QString>

#include <memory>

class QSqlDriver;

namespace DataAccess::Database::Native {

/// Runs @p select on the database of @p driver, which is open, and reads its rows from PostgreSQL's own result; null
/// when that cannot be done. Throws ExecutionException.
std::unique_ptr<Interfaces::IRowReader> postgresRowReader(const QSqlDriver& driver, const QString& select);

} // namespace DataAccess::Database::Native
