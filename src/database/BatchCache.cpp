#include "database/BatchCache.h"

#include "database/DbException.h"
#include "database/IDatabase.h"
#include "database/LoggingCategories.h"
#include "database/backends/Backend.h"

namespace DataAccess::Database {

BatchCache::BatchCache(Interfaces::IDatabase& db, std::size_t rows)
    : m_db(db)
{
    constexpr std::size_t largeBatch = 1000;
    if (rows < largeBatch)
        return;
    try {
        m_restore = Backend::of(db).enlargeCache(db);
    } catch (const Exceptions::DbException& error) {
        qCWarning(lcDatabase) << Q_FUNC_INFO << error.what();
    }
}

BatchCache::~BatchCache()
{
    try {
        if (!m_restore.isEmpty())
            m_db.Exec(m_restore);
    } catch (const Exceptions::DbException& error) {
        qCWarning(lcDatabase) << Q_FUNC_INFO << error.what();
    }
}

} // namespace DataAccess::Database
