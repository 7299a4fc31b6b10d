#pragma once

namespace DataAccess::Enumerations {

/// Which kind of failure a DbException reports.
enum ExceptionType : int { NotOpen = 1, Execution = 2, InvalidDb = 3 };

} // namespace DataAccess::Enumerations
