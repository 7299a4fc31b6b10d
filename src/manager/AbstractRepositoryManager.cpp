#include "manager/AbstractRepositoryManager.h"

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

} // namespace DataAccess::Manager
