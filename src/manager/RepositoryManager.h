#pragma once

#include "manager/IRepositoryManager.h"

#include <QObject>

namespace DataAccess::Manager {

/**
 * Joins the managers and contexts of one database, of which it shares the ownership. Any thread may call the accessors.
 * The contexts are released before the managers that they work on.
 */
class DATAACCESS_EXPORT RepositoryManager : public QObject, public Interfaces::IRepositoryManager
{
    Q_OBJECT

public:
    /// Each argument may be null. @p worker is not owned and must outlive whoever uses it.
    RepositoryManager(std::shared_ptr<Interfaces::IEditorRepositoryManager> editor,
                      std::shared_ptr<Interfaces::IPdRepositoryManager> pd,
                      std::shared_ptr<Interfaces::ILbRepositoryManager> lb,
                      std::shared_ptr<Context::CableContext> cableContext,
                      std::shared_ptr<Context::PdContext> pdContext, Database::DbWorker* worker,
                      QObject* parent = nullptr);
    ~RepositoryManager() override;
    RepositoryManager(const RepositoryManager&) = delete;
    RepositoryManager& operator=(const RepositoryManager&) = delete;

    /// What the constructor was given.
    std::shared_ptr<Interfaces::IEditorRepositoryManager> EditorRepositories() const override;
    std::shared_ptr<Interfaces::IPdRepositoryManager> PdRepositories() const override;
    std::shared_ptr<Interfaces::ILbRepositoryManager> LbRepositories() const override;
    std::shared_ptr<Context::CableContext> CableContext() const override;
    std::shared_ptr<Context::PdContext> PdContext() const override;
    Database::DbWorker* dbWorker() const override;

private:
    struct Data;

    std::unique_ptr<Data> m_data;
};

} // namespace DataAccess::Manager
