#include "factories/EditorRepositoryManagerFactory.h"
#include "factories/LbRepositoryManagerFactory.h"
#include "factories/PdRepositoryManagerFactory.h"
#include "manager/private/Kinds.h"

namespace DataAccess::Factories {

namespace {

/// Makes the parent of @p child, which others own, release it at its own end instead of deleting it.
void keepFromDeletion(QObject& child)
{
    if (child.parent() == nullptr)
        return;
    // An object says that it is destroyed before it deletes its children. Queued, the message would come too late.
    QObject::connect(
        child.parent(), &QObject::destroyed, &child, [&child] { child.setParent(nullptr); }, Qt::DirectConnection);
}

/**
 * Makes a manager with a repository of each of @p kinds. It is a child of @p parent, as far as that is on the calling
 * thread, and yet ends with its last shared reference only. That, or the parent, may end first, though not at the same
 * time on two threads.
 */
template <typename Manager, typename Kinds>
std::shared_ptr<Manager> makeManager(const Kinds& kinds, Database::DbWorker* worker,
                                     Enumerations::LoadingStrategies strategy, QObject* parent)
{
    auto manager = std::make_shared<Manager>(parent);
    keepFromDeletion(*manager);
    forEachKind(kinds, [&](const auto& kind) {
        using Repository = typename std::decay_t<decltype(kind)>::Repository;
        ((*manager).*kind.setRepository)(std::make_shared<Repository>(worker, strategy, manager));
    });
    return manager;
}

} // namespace

EditorRepositoryManagerFactory::EditorRepositoryManagerFactory(QObject* parent)
    : QObject(parent)
{}

EditorRepositoryManagerFactory::~EditorRepositoryManagerFactory() = default;

std::shared_ptr<Manager::EditorRepositoryManager>
EditorRepositoryManagerFactory::create(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy)
{
    return makeManager<Manager::EditorRepositoryManager>(Manager::editorKinds, worker, strategy, parent());
}

PdRepositoryManagerFactory::PdRepositoryManagerFactory(QObject* parent)
    : QObject(parent)
{}

PdRepositoryManagerFactory::~PdRepositoryManagerFactory() = default;

std::shared_ptr<Manager::PdRepositoryManager>
PdRepositoryManagerFactory::create(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy)
{
    return makeManager<Manager::PdRepositoryManager>(Manager::pdKinds, worker, strategy, nullptr);
}

LbRepositoryManagerFactory::LbRepositoryManagerFactory(QObject* parent)
    : QObject(parent)
{}

LbRepositoryManagerFactory::~LbRepositoryManagerFactory() = default;

std::shared_ptr<Manager::LbRepositoryManager>
LbRepositoryManagerFactory::create(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy)
{
    return makeManager<Manager::LbRepositoryManager>(Manager::lbKinds, worker, strategy, parent());
}

} // namespace DataAccess::Factories
