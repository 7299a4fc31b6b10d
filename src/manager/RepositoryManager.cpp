#include "manager/RepositoryManager.h"

#include <utility>

namespace DataAccess::Interfaces {

IRepositoryManager::~IRepositoryManager() = default;

} // namespace DataAccess::Interfaces

namespace DataAccess::Manager {

/// Let go of from the last to the first.
struct RepositoryManager::Data
{
    std::shared_ptr<Interfaces::IEditorRepositoryManager> editor;
    std::shared_ptr<Interfaces::IPdRepositoryManager> pd;
    std::shared_ptr<Interfaces::ILbRepositoryManager> lb;
    std::shared_ptr<Context::CableContext> cableContext;
    std::shared_ptr<Context::PdContext> pdContext;
    Database::DbWorker* worker;
};

RepositoryManager::RepositoryManager(std::shared_ptr<Interfaces::IEditorRepositoryManager> editor,
                                     std::shared_ptr<Interfaces::IPdRepositoryManager> pd,
                                     std::shared_ptr<Interfaces::ILbRepositoryManager> lb,
                                     std::shared_ptr<Context::CableContext> cableContext,
                                     std::shared_ptr<Context::PdContext> pdContext, Database::DbWorker* worker,
                                     QObject* parent)
    : QObject(parent)
    , m_data(std::make_unique<Data>(
          Data{std::move(editor), std::move(pd), std::move(lb), std::move(cableContext), std::move(pdContext), worker}))
{}

RepositoryManager::~RepositoryManager() = default;

std::shared_ptr<Interfaces::IEditorRepositoryManager> RepositoryManager::EditorRepositories() const
{
    return m_data->editor;
}

std::shared_ptr<Interfaces::IPdRepositoryManager> RepositoryManager::PdRepositories() const
{
    return m_data->pd;
}

std::shared_ptr<Interfaces::ILbRepositoryManager> RepositoryManager::LbRepositories() const
{
    return m_data->lb;
}

std::shared_ptr<Context::CableContext> RepositoryManager::CableContext() const
{
    return m_data->cableContext;
}

std::shared_ptr<Context::PdContext> RepositoryManager::PdContext() const
{
    return m_data->pdContext;
}

Database::DbWorker* RepositoryManager::dbWorker() const
{
    return m_data->worker;
}

} // namespace DataAccess::Manager
