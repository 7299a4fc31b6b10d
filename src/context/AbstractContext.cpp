#include "context/AbstractContext.h"

#include "context/SavePass.h"
#include "manager/AbstractRepositoryManager.h"

#include <atomic>

namespace DataAccess::Context {

using namespace QOR::Entities::Enumerations;

struct AbstractContext::Data
{
    std::shared_ptr<std::recursive_mutex> turn = std::make_shared<std::recursive_mutex>();
    Entities attached;
    Entities added;
    const unsigned int value;
    const Enumerations::LoadingStrategies strategy;
    const std::shared_ptr<Manager::AbstractRepositoryManager> manager;
    std::atomic<bool> isLoading{false};

    Data(std::shared_ptr<Manager::AbstractRepositoryManager> owned, Enumerations::LoadingStrategies howMuch,
         unsigned int kept)
        : value(kept)
        , strategy(howMuch)
        , manager(std::move(owned))
    {}
};

AbstractContext::AbstractContext(const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                 Enumerations::LoadingStrategies strategy, unsigned int value, QObject* parent)
    : QObject(parent)
    , m_data(std::make_unique<Data>(manager, strategy, value))
{}

AbstractContext::~AbstractContext() = default;

// NOLINTNEXTLINE(performance-unnecessary-value-param): applications override it with this signature.
void AbstractContext::attach(std::shared_ptr<QOR::Entities::Entity> entity)
{
    if (!entity)
        return;
    const Turn turn = takeTurn();
    const QUuid id = entity->Id();
    if (m_data->attached.contains(id))
        return;
    m_data->added.insert(id, entity);
    m_data->attached.insert(id, entity);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): as above.
void AbstractContext::detach(std::shared_ptr<QOR::Entities::Entity> entity)
{
    if (!entity)
        return;
    const Turn turn = takeTurn();
    m_data->attached.remove(entity->Id());
    m_data->added.remove(entity->Id());
}

unsigned int AbstractContext::count() const
{
    const Turn turn = takeTurn();
    return static_cast<unsigned int>(m_data->attached.size());
}

bool AbstractContext::isLoading() const
{
    return m_data->isLoading;
}

Enumerations::LoadingStrategies AbstractContext::loadingStrategy() const
{
    return m_data->strategy;
}

AbstractContext::Turn AbstractContext::takeTurn() const
{
    return Turn(*m_data->turn);
}

void AbstractContext::shareTurns(const AbstractContext& other)
{
    m_data->turn = other.m_data->turn;
}

void AbstractContext::setIsLoading(bool isLoading)
{
    if (m_data->isLoading.exchange(isLoading) != isLoading)
        Q_EMIT loadingChanged(isLoading);
}

const std::shared_ptr<Manager::AbstractRepositoryManager>& AbstractContext::manager() const
{
    return m_data->manager;
}

unsigned int AbstractContext::value() const
{
    return m_data->value;
}

const AbstractContext::Entities& AbstractContext::attached() const
{
    return m_data->attached;
}

const AbstractContext::Entities& AbstractContext::added() const
{
    return m_data->added;
}

void AbstractContext::emptyAttached()
{
    m_data->attached = {};
    m_data->added = {};
}

void AbstractContext::takeIn(const EntityPointer& entity)
{
    if (entity->EntityState() == Deleted)
        m_data->attached.remove(entity->Id());
    else
        m_data->attached.insert(entity->Id(), entity);
}

void AbstractContext::attachInPlace(const EntityPointer& entity)
{
    m_data->added.insert(entity->Id(), entity);
    m_data->attached.insert(entity->Id(), entity);
}

SavePass AbstractContext::beginSaving() const
{
    SavePass pass(m_data->attached);
    const bool isEverythingLoaded = m_data->added.isEmpty();
    for (const EntityPointer& entity : m_data->attached) {
        if (entity->EntityState() != Normal || (!isEverythingLoaded && m_data->added.contains(entity->Id())))
            pass.addCandidate(entity);
    }
    return pass;
}

void AbstractContext::resetStates(const SavePass& pass)
{
    // A copy: an observer that is told of the state may attach more.
    const Entities saved = m_data->attached;
    for (const EntityPointer& entity : saved) {
        if (pass.hasFailed(*entity))
            continue;
        entity->SetEntityState(Normal);
        m_data->added.remove(entity->Id());
    }
}

void AbstractContext::finishSaving(const SavePass& pass)
{
    if (pass.failures() > 0)
        Q_EMIT savingFailed(QStringLiteral("%1 entities could not be stored").arg(pass.failures()));
    Q_EMIT savingCompleted();
}

} // namespace DataAccess::Context
