#include "context/AbstractContext.h"

#include "context/private/KindLedger.h"
#include "context/private/SaveRun.h"
#include "manager/AbstractRepositoryManager.h"

#include <atomic>

namespace DataAccess::Context {

struct AbstractContext::Data
{
    enum class Load { None, Complete, Failed };

    std::shared_ptr<std::recursive_mutex> turn = std::make_shared<std::recursive_mutex>();
    const unsigned int value;
    const Enumerations::LoadingStrategies strategy;
    const std::shared_ptr<Manager::AbstractRepositoryManager> manager;
    const std::shared_ptr<EntityLedger> ledger;
    std::atomic<bool> isLoading{false};
    std::atomic<Load> load{Load::None};

    Data(std::shared_ptr<Manager::AbstractRepositoryManager> owned, Enumerations::LoadingStrategies howMuch,
         unsigned int kept, std::shared_ptr<EntityLedger> known)
        : value(kept)
        , strategy(howMuch)
        , manager(std::move(owned))
        , ledger(std::move(known))
    {}
};

AbstractContext::AbstractContext(const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                 Enumerations::LoadingStrategies strategy, unsigned int value, QObject* parent)
    : AbstractContext(manager, strategy, value, parent, std::make_shared<KindLedger<EntityHashes<>>>())
{}

AbstractContext::AbstractContext(const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                                 Enumerations::LoadingStrategies strategy, unsigned int value, QObject* parent,
                                 std::shared_ptr<EntityLedger> ledger)
    : QObject(parent)
    , m_data(std::make_unique<Data>(manager, strategy, value, std::move(ledger)))
{}

AbstractContext::~AbstractContext() = default;

// NOLINTNEXTLINE(performance-unnecessary-value-param): applications override it with this signature.
void AbstractContext::attach(std::shared_ptr<QOR::Entities::Entity> entity)
{
    if (!entity)
        return;
    const Turn turn = takeTurn();
    if (!m_data->ledger->attach(entity))
        qCWarning(lcContext).noquote() << "Another entity is attached as" << entity->Id().toString() << "and stays";
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): as above.
void AbstractContext::detach(std::shared_ptr<QOR::Entities::Entity> entity)
{
    if (!entity)
        return;
    const Turn turn = takeTurn();
    m_data->ledger->detach(entity);
}

unsigned int AbstractContext::count() const
{
    const Turn turn = takeTurn();
    return m_data->ledger->count();
}

bool AbstractContext::isLoading() const
{
    return m_data->isLoading;
}

bool AbstractContext::isLoaded() const
{
    return m_data->load == Data::Load::Complete;
}

bool AbstractContext::hasLoadFailed() const
{
    return m_data->load == Data::Load::Failed;
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

const std::shared_ptr<EntityLedger>& AbstractContext::ledger() const
{
    return m_data->ledger;
}

void AbstractContext::finishLoading(const QString& reason)
{
    m_data->load = reason.isEmpty() ? Data::Load::Complete : Data::Load::Failed;
    if (reason.isEmpty())
        return;
    qCCritical(lcContext).noquote() << "Not loaded:" << reason;
    Q_EMIT loadingFailed(reason);
}

void AbstractContext::finishSaving(SaveRun& run)
{
    const QString reason = run.finish();
    if (!reason.isEmpty())
        Q_EMIT savingFailed(reason);
    Q_EMIT savingCompleted();
}

} // namespace DataAccess::Context
