#pragma once

namespace DataAccess::Enumerations {

/// The backend of a database. Stored in the settings file; a value outside this list reads as "none".
enum DatabaseType : int {
    None = 0,
    SQLite2 = 1, ///< Legacy files, driver "QSQLITE2".
    SQLite3 = 2, ///< The embedded default, driver "QSQLITE".
    Postgres = 3 ///< Driver "QPSQL".
};

} // namespace DataAccess::Enumerations
