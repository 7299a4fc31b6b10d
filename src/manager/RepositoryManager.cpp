#include "manager/RepositoryManager.h"

#include "manager/private/RepositorySlots.h"

#include <utility>

namespace DataAccess::Interfaces {

ILbRepositoryManager::~ILbRepositoryManager() = default;

IRepositoryManager::~IRepositoryManager() = default;

} // namespace DataAccess::Interfaces

// The base of the managers, the smallest of them, and the one that joins them.
namespace DataAccess::Manager {

AbstractRepositoryManager::AbstractRepositoryManager(QObject* parent)
    : QObject(parent)
{}

AbstractRepositoryManager::~AbstractRepositoryManager() = default;

void AbstractRepositoryManager::SetContext(const std::shared_ptr<DataAccess::Context::AbstractContext>& context)
{
    if (m_context.lock() != context)
        m_context = context;
}

std::shared_ptr<DataAccess::Context::AbstractContext> AbstractRepositoryManager::Context() const
{
    return m_context.lock();
}

void AbstractRepositoryManager::SetSchemaIsNewer(bool isNewer)
{
    m_schemaIsNewer = isNewer;
}

bool AbstractRepositoryManager::SchemaIsNewer() const
{
    return m_schemaIsNewer;
}

const std::vector<std::weak_ptr<void>>& AbstractRepositoryManager::repositories() const
{
    return m_repositories;
}

struct LbRepositoryManager::Data : RepositorySlots<LbKinds>
{};

LbRepositoryManager::LbRepositoryManager(QObject* parent)
    : AbstractRepositoryManager(parent)
    , m_data(std::make_unique<Data>())
{}

LbRepositoryManager::~LbRepositoryManager() = default;

std::shared_ptr<LbRepositoryManager::Measures> LbRepositoryManager::CablebookMeasuresRepository() const
{
    return m_data->of<LB::Entities::CablebookMeasure>().plain();
}

std::shared_ptr<LbRepositoryManager::Measures> LbRepositoryManager::CablebookMeasuresRepositoryCached() const
{
    return m_data->of<LB::Entities::CablebookMeasure>().cached();
}

void LbRepositoryManager::SetCablebookMeasuresRepository(const std::shared_ptr<Measures>& repository)
{
    install(m_data->of<LB::Entities::CablebookMeasure>(), repository);
}

/// The members are destroyed from the last to the first.
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
