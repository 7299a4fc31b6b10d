#pragma once

#include "bench/BareContender.h"
#include "bench/BarePostgres.h"
#include "bench/BareSqlite.h"
#include "bench/LibraryContender.h"
#include "bench/QtSqlContender.h"
#include "migration/editor/EditorMigrationManager.h"
#include "migration/pd/PdMigrationManager.h"
#include "support/TestDatabase.h"

#include <algorithm>
#include <memory>

namespace Bench {

/// The ways to store rows that are compared.
enum class Way {
    Library,
    Bare,  ///< The database's own interface, with the library's entities.
    Plain, ///< The same with plain structures.
    ByHand ///< Qt SQL with the library's entities.
};

/// What the tables call a backend.
inline QString backendName(DataAccess::Enumerations::DatabaseType type)
{
    return type == DataAccess::Enumerations::Postgres ? QStringLiteral("PostgreSQL") : QStringLiteral("SQLite");
}

/// A new configuration of the database that is called @p name.
inline std::shared_ptr<DataAccess::Interfaces::IConfig> makeConfig(DataAccess::Enumerations::DatabaseType type,
                                                                   const QString& name)
{
    if (type == DataAccess::Enumerations::Postgres)
        return TestSupport::serverConfig(name);
    auto config = std::make_shared<DataAccess::Database::DatabaseConfig>();
    config->SetConnectionName(QUuid::createUuid().toString());
    config->SetDatabaseName(name);
    config->SetType(type);
    return config;
}

/// Brings the schema of the database of @p config up to date. Ends the process when that fails.
inline void migrate(const std::shared_ptr<DataAccess::Interfaces::IConfig>& config)
{
    const TestSupport::RunningWorker worker(config);
    DataAccess::Manager::EditorMigrationManager editor;
    DataAccess::Manager::PdMigrationManager pd;
    editor.setDbWorker(worker.get());
    pd.setDbWorker(worker.get());
    if (!editor.Migrate() || !pd.Migrate())
        qFatal("The schema cannot be made");
}

template <typename Kind, typename Object>
std::unique_ptr<Contender<Object>> makeBare(DataAccess::Interfaces::IConfig& config)
{
    if (config.Type() == DataAccess::Enumerations::Postgres)
        return std::make_unique<BareContender<Kind, Object, BarePostgres>>(config);
    return std::make_unique<BareContender<Kind, Object, BareSqlite>>(config);
}

/// All ways to store one kind in one database. Each has a connection of its own, which is opened when it is first used.
template <typename Kind>
class Contenders
{
public:
    using Entity = typename Kind::Entity;
    using Plain = typename Kind::Plain;

    Contenders(DataAccess::Enumerations::DatabaseType type, QString name)
        : m_type(type)
        , m_name(std::move(name))
    {}

    /// Calls @p work with the contender of @p way.
    template <typename Work>
    auto with(Way way, const Work& work)
    {
        if (way == Way::Plain)
            return work(opened(m_plain, [&] { return makeBare<Kind, Plain>(*config()); }));
        if (way == Way::Bare)
            return work(opened(m_bare, [&] { return makeBare<Kind, Entity>(*config()); }));
        if (way == Way::Library)
            return work(opened(m_library, [&] { return std::make_unique<LibraryContender<Kind>>(config()); }));
        return work(opened(m_byHand, [&] { return std::make_unique<QtSqlContender<Kind>>(*config()); }));
    }

private:
    template <typename Object, typename Make>
    static Contender<Object>& opened(std::unique_ptr<Contender<Object>>& contender, const Make& make)
    {
        if (!contender)
            contender = make();
        return *contender;
    }

    std::shared_ptr<DataAccess::Interfaces::IConfig> config() const { return makeConfig(m_type, m_name); }

    DataAccess::Enumerations::DatabaseType m_type;
    QString m_name;
    std::unique_ptr<Contender<Entity>> m_library;
    std::unique_ptr<Contender<Entity>> m_bare;
    std::unique_ptr<Contender<Plain>> m_plain;
    std::unique_ptr<Contender<Entity>> m_byHand;
};

/// A new database with all tables, and @p rows rows of one kind in it; gone with the object.
template <typename Kind>
class BenchDatabase
{
public:
    BenchDatabase(DataAccess::Enumerations::DatabaseType type, int rows)
        : m_database(type)
    {
        using Plain = typename Kind::Plain;
        migrate(m_database.config());
        const List<Plain> objects = makeObjects<Kind, Plain>(rows);
        makeBare<Kind, Plain>(*m_database.config())->insert(objects);
        for (const auto& object : objects)
            m_ids.push_back(object->id);
    }

    const TestSupport::TestDatabase& database() const { return m_database; }
    /// Up to @p count ids of stored rows, from all over the table.
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
