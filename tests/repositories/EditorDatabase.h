#pragma once

#include "database/LoadingStrategies.h"
#include "support/RunningWorker.h"
#include "support/TestDatabase.h"

namespace TestSupport {

/// A database of one backend, the current one as a rule, with the cable-network schema, and a worker on it.
class EditorDatabase
{
public:
    explicit EditorDatabase(DataAccess::Enumerations::DatabaseType type = currentBackend());

    /// A repository on the worker, without a manager.
    template <typename Repository>
    Repository
    repository(DataAccess::Enumerations::LoadingStrategies strategy = DataAccess::Enumerations::Complete) const
    {
        return Repository(m_worker.get(), strategy, nullptr);
    }

    /// Runs @p statement, and returns the first column of its first row.
    QVariant value(const QString& statement);

    DataAccess::Enumerations::DatabaseType type() const { return m_database.type(); }
    const QString& name() const { return m_database.name(); }
    /// For a connection of another program.
    std::shared_ptr<DataAccess::Database::DatabaseConfig> config() const { return m_database.config(); }
    RunningWorker& worker() { return m_worker; }

private:
    TestDatabase m_database;
    RunningWorker m_worker;
};

} // namespace TestSupport
