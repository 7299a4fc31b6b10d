#include "database/BatchCache.h"

#include "database/DbException.h"
#include "database/IDatabase.h"
#include "database/LoggingCategories.h"

#include <QSqlQuery>
#include <QVariant>

namespace DataAccess::Database {

namespace {

constexpr std::size_t s_largeBatch = 1000;

void setSize(Interfaces::IDatabase& db, const QString& size)
{
    try {
        db.Exec(QStringLiteral("PRAGMA cache_size = %1").arg(size));
    } catch (const Exceptions::DbException& error) {
        qCWarning(lcDatabase) << Q_FUNC_INFO << error.what();
    }
}

} // namespace

BatchCache::BatchCache(Interfaces::IDatabase& db, std::size_t rows)
    : m_db(db)
{
    if (rows < s_largeBatch || db.Config()->Type() != Enumerations::SQLite3)
        return;
    try {
        QSqlQuery query = db.Exec(QStringLiteral("PRAGMA cache_size"));
        if (query.next())
            m_before = query.value(0).toString();
    } catch (const Exceptions::DbException& error) {
        qCWarning(lcDatabase) << Q_FUNC_INFO << error.what();
    }
    if (!m_before.isEmpty())
        setSize(db, QStringLiteral("-131072")); // negative: kilobytes, not pages
}

BatchCache::~BatchCache()
{
    if (!m_before.isEmpty())
        setSize(m_db, m_before);
}

} // namespace DataAccess::Database
