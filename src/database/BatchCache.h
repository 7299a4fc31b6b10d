#pragma once

#include "database/DataAccessExport.h"

#include <QString>

#include <cstddef>

namespace DataAccess::Interfaces {
class IDatabase;
}

namespace DataAccess::Database {

/**
 * Lets SQLite keep more of the file in memory while a large batch is written, up to 128 MB. Ids are random: each row
 * changes other pages, which SQLite would otherwise write and read again and again before the batch is committed.
 *
 * Used on the worker's thread, by a job whose transaction has written its first row: it then waits for no lock.
 */
class DATAACCESS_EXPORT BatchCache
{
public:
    /// Changes nothing for a batch of few @p rows, and on other backends. Never throws.
    BatchCache(Interfaces::IDatabase& db, std::size_t rows);
    /// Gives the connection the cache that it had; after the guard of the transaction, which may have been lost.
    ~BatchCache();
    BatchCache(const BatchCache&) = delete;
    BatchCache& operator=(const BatchCache&) = delete;

private:
    Interfaces::IDatabase& m_db;
    QString m_restore; ///< Statement that gives the connection back the cache that it had; empty: not changed.
};

} // namespace DataAccess::Database
