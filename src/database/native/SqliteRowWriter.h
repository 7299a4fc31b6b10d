#pragma once

#include "database/IRowWriter.h"

#include <QSqlQuery>

#include <functional>
#include <memory>

namespace DataAccess::Database::Native {

/**
 * Runs @p query, which is prepared and has named parameters, through SQLite itself, and calls @p written after each
 * row; null when that cannot be done. Outside a transaction it calls @p makeReady before each row, which throws when
 * none may be written.
 */
std::unique_ptr<Interfaces::IRowWriter> sqliteRowWriter(const QSqlQuery& query, std::function<void()> written,
                                                        std::function<void()> makeReady);

} // namespace DataAccess::Database::Native
