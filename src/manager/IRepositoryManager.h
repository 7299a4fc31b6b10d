#pragma once

#include "manager/IEditorRepositoryManager.h"
#include "manager/ILbRepositoryManager.h"
#include "manager/IPdRepositoryManager.h"

namespace DataAccess::Context {
class CableContext;
class PdContext;
} // namespace DataAccess::Context
namespace DataAccess::Database {
class DbWorker;
}

namespace DataAccess::Interfaces {

/// All that there is for one open database: the three families of repositories, the two contexts, the worker.
class DATAACCESS_EXPORT IRepositoryManager
{
public:
    virtual ~IRepositoryManager();

    // Applications rely on the order of these.
    /// The repositories of the cable network.
    virtual std::shared_ptr<IEditorRepositoryManager> EditorRepositories() const = 0;
    /// The repositories of the partial-discharge results.
    virtual std::shared_ptr<IPdRepositoryManager> PdRepositories() const = 0;
    /// The repository of the cable book's measures.
    virtual std::shared_ptr<ILbRepositoryManager> LbRepositories() const = 0;
    /// The cable network as a whole; empty until its reload().
    virtual std::shared_ptr<Context::CableContext> CableContext() const = 0;
    /// The partial-discharge results as a whole; empty until its reload().
    virtual std::shared_ptr<Context::PdContext> PdContext() const = 0;
    /// The worker on whose thread all of this runs. Not owned; it ends when its database is removed.
    virtual Database::DbWorker* dbWorker() const = 0;

protected:
    IRepositoryManager() = default;
    IRepositoryManager(const IRepositoryManager&) = default;
    IRepositoryManager& operator=(const IRepositoryManager&) = default;
};

} // namespace DataAccess::Interfaces
