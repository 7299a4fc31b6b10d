#pragma once

#include "database/DataAccessExport.h"

#include <QObject>

#include <memory>
#include <vector>

namespace DataAccess::Context {
class AbstractContext;
}

namespace DataAccess::Manager {

/**
 * Base of the managers, each of which hands out the repositories of one family of data in one database.
 *
 * A manager owns its repositories and their cached views, which hold it weakly, if at all. It holds its context weakly:
 * a context owns the manager that it works on. A manager is filled before it is shared, and only read from then on; the
 * accessors may then be called from any thread.
 */
class DATAACCESS_EXPORT AbstractRepositoryManager : public QObject
{
    Q_OBJECT

public:
    /// Has no repositories yet.
    explicit AbstractRepositoryManager(QObject* parent = nullptr);
    ~AbstractRepositoryManager() override;
    AbstractRepositoryManager(const AbstractRepositoryManager&) = delete;
    AbstractRepositoryManager& operator=(const AbstractRepositoryManager&) = delete;

    /// Sets the context that works on this manager, and holds it weakly: null when none was set, or it is gone.
    void SetContext(const std::shared_ptr<DataAccess::Context::AbstractContext>& context);
    std::shared_ptr<DataAccess::Context::AbstractContext> Context() const;

    /// Whether the tables have a newer layout than this build knows; then nothing is written to them unasked. False
    /// unless set; to be set before the manager is shared.
    void SetSchemaIsNewer(bool isNewer);
    bool SchemaIsNewer() const;

protected:
    /// Puts @p repository into @p slot, with a new cached view where the slot has one; the repository that is there
    /// already keeps its view.
    template <typename Slot, typename Plain>
    void install(Slot& slot, const std::shared_ptr<Plain>& repository)
    {
        if (slot.set(repository))
            m_repositories.emplace_back(repository);
    }

    /// Every repository that was ever installed behind a view, in that order; those that are gone have expired.
    const std::vector<std::weak_ptr<void>>& repositories() const;

private:
    std::vector<std::weak_ptr<void>> m_repositories;
    std::weak_ptr<DataAccess::Context::AbstractContext> m_context;
    bool m_schemaIsNewer = false;
};

} // namespace DataAccess::Manager
