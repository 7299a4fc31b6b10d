#pragma once

#include "bench/BareContender.h"
#include "bench/BarePostgres.h"
#include "bench/BareSqlite.h"
#include "bench/LibraryContender.h"
#include "bench/QtSqlContender.h"
#include "support/TestDatabase.h"

#include <QString>

#include <memory>

namespace Bench {

/// The three ways to store entities that are compared.
enum class Way { Library, Bare, HandWritten };

/// Brings the schema of the database of @p config up to date. Ends the process when that fails.
void migrate(const std::shared_ptr<DataAccess::Interfaces::IConfig>& config);

/// A new configuration of the database that is called @p name.
std::shared_ptr<DataAccess::Interfaces::IConfig> makeConfig(DataAccess::Enumerations::DatabaseType type,
                                                            const QString& name);

/// What the table calls a backend.
QString backendName(DataAccess::Enumerations::DatabaseType type);

/// A contender on the database of @p config, with a connection of its own.
template <typename Kind>
std::unique_ptr<Contender<Kind>> makeContender(Way way, const std::shared_ptr<DataAccess::Interfaces::IConfig>& config)
{
    if (way == Way::Library)
        return std::make_unique<LibraryContender<Kind>>(config);
    if (way == Way::HandWritten)
        return std::make_unique<QtSqlContender<Kind>>(*config);
    if (config->Type() == DataAccess::Enumerations::Postgres)
        return std::make_unique<BareContender<Kind, BarePostgres>>(*config);
    return std::make_unique<BareContender<Kind, BareSqlite>>(*config);
}

/// A new database with all tables, and @p rows entities of one kind in it; gone with the object.
template <typename Kind>
class BenchDatabase
{
public:
    BenchDatabase(DataAccess::Enumerations::DatabaseType type, int rows)
        : m_database(type)
    {
        migrate(m_database.config());
        const EntityList<Kind> entities = makeEntities<Kind>(rows);
        contender(Way::Bare)->insert(entities);
        for (const auto& entity : entities)
            m_ids.push_back(entity->Id());
    }

    std::unique_ptr<Contender<Kind>> contender(Way way) const { return makeContender<Kind>(way, m_database.config()); }
    const TestSupport::TestDatabase& database() const { return m_database; }
    /// Up to @p count ids of stored entities, from all over the table.
    std::vector<QUuid> someIds(std::size_t count) const
    {
        std::vector<QUuid> ids;
        const std::size_t step = std::max<std::size_t>(1, m_ids.size() / count);
        for (std::size_t i = 0; i < m_ids.size() && ids.size() < count; i += step)
            ids.push_back(m_ids[i]);
        return ids;
    }

private:
    TestSupport::TestDatabase m_database;
    std::vector<QUuid> m_ids;
};

} // namespace Bench
