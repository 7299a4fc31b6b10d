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
    virtual std::shared_ptr<IEditorRepositoryManager> EditorRepositories() const = 0;
    virtual std::shared_ptr<IPdRepositoryManager> PdRepositories() const = 0;
    virtual std::shared_ptr<ILbRepositoryManager> LbRepositories() const = 0;
    virtual std::shared_ptr<Context::CableContext> CableContext() const = 0;
    virtual std::shared_ptr<Context::PdContext> PdContext() const = 0;
    /// Not owned; it ends when its database is removed.
    virtual Database::DbWorker* dbWorker() const = 0;

protected:
    IRepositoryManager() = default;
    IRepositoryManager(const IRepositoryManager&) = default;
    IRepositoryManager& operator=(const IRepositoryManager&) = default;
};

} // namespace DataAccess::Interfaces
