#pragma once

#include <QString>

namespace DataAccess::Database {

/// Logs @p text, the driver's words on a statement that failed, and throws ExecutionException with it.
[[noreturn]] void throwStatementError(const QString& text);

} // namespace DataAccess::Database
