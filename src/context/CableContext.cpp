#include "context/CableContext.h"

#include "context/CableImport.h"
#include "context/CableNetwork.h"
#include "context/CableRepositories.h"
#include "context/KindLedger.h"
#include "context/NetworkLinks.h"
#include "context/PendingLoad.h"
#include "context/SaveRun.h"
#include "context/SegmentCleanup.h"
#include "manager/EditorRepositoryManager.h"

#include <atomic>
#include <memory>
#include <utility>

namespace DataAccess::Context {

using namespace Cables::Entities;
using namespace QOR::Entities::Enumerations;
using CableLedger = KindLedger<ForEachCableKind>;

namespace {

/// The loads of all kinds, and what they give.
class NetworkLoad
{
public:
    /// Queues the load of each kind.
    template <typename... T>
    void start(const Interfaces::IEditorRepositoryManager& manager)
    {
        (of<T>().start(plainRepository<T>(manager), m_failed), ...);
    }

    /// Waits for the kinds in the order in which they were queued, and calls @p arrived after each. The first that
    /// fails ends it: the others would fail too, each after a time-out, or be of no use. Gives the reason.
    template <typename... T, typename Callback>
    QString await(const Callback& arrived)
    {
        QString failure;
        const auto next = [&](auto& load) {
            if (!load.isFilled())
                return true;
            failure = load.failure();
            if (failure.isEmpty())
                arrived();
            return failure.isEmpty();
        };
        *m_failed = !(next(of<T>()) && ...);
        return failure;
    }

    template <typename... T>
    bool arePending() const
    {
        return (std::get<PendingLoad<T>>(m_loads).isFilled() && ...);
    }

    int countPending() const
    {
        return std::apply([](const auto&... load) { return (int(load.isFilled()) + ...); }, m_loads);
    }

    template <typename... T>
    void take(CableLedger& ledger)
    {
        (ledger.load(of<T>().take()), ...);
    }

private:
    template <typename T>
    PendingLoad<T>& of()
    {
        return std::get<PendingLoad<T>>(m_loads);
    }

    ForEachCableKind<PendingLoad> m_loads;
    /// The worker sets it too: it would begin the next load, and wait for a lock again, before anybody here is told.
    std::shared_ptr<std::atomic<bool>> m_failed = std::make_shared<std::atomic<bool>>(false);
};

} // namespace

struct CableContext::Data
{
    std::shared_ptr<CableLedger> ledger;
    std::shared_ptr<Interfaces::IEditorRepositoryManager> manager;
};

CableContext::CableContext(Enumerations::LoadingStrategies strategy,
                           const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, unsigned int value,
                           QObject* parent)
    : AbstractContext(manager, strategy, value, parent, std::make_shared<CableLedger>())
    , m_data(std::make_unique<Data>())
{
    m_data->ledger = std::static_pointer_cast<CableLedger>(ledger());
    m_data->manager = std::dynamic_pointer_cast<Manager::EditorRepositoryManager>(manager);
    insertDefaults();
}

CableContext::~CableContext() = default;

void CableContext::insertDefaults()
{
    if (!m_data->manager)
        return;
    if (manager()->SchemaIsNewer()) {
        qCWarning(lcContext) << "The schema is newer than this: the default types are not stored";
        return;
    }
    insertDefaults(*m_data->manager);
}

void CableContext::reload()
{
    const Turn turn = takeTurn();
    setIsLoading(true);
    m_data->ledger->clear();
    const QString failure = load();
    finishLoading(failure);
    if (failure.isEmpty()) {
        cleanup();
        concat();
    }
    setIsLoading(false);
    Q_EMIT loadingCompleted();
}

QString CableContext::load()
{
    if (!m_data->manager)
        return {};
    NetworkLoad loads;
    loads.start<Point, Segment, SegmentType, Insulation, Switchgear, Termination, Owner, SegmentDetail, Cable, Rating,
                Route, Station, Phase>(*m_data->manager);
    const int total = loads.countPending();
    int done = 0;
    QString failure =
        loads.await<Point, Segment, SegmentType, Insulation, Switchgear, Termination, Owner, SegmentDetail, Cable,
                    Rating, Route, Station, Phase>([&] { Q_EMIT loadingProgress(++done, total); });
    if (!failure.isEmpty())
        return failure;
    CableLedger& ledger = *m_data->ledger;
    if (loads.arePending<SegmentDetail, SegmentType, Insulation>())
        loads.take<SegmentDetail, Insulation, SegmentType>(ledger);
    if (loads.arePending<Segment, Phase>())
        loads.take<Segment, Phase>(ledger);
    if (loads.arePending<Route, Point>())
        loads.take<Route, Point>(ledger);
    if (loads.arePending<Cable, Owner, Station, Switchgear, Termination>())
        loads.take<Cable, Owner, Station, Switchgear, Termination, Rating>(ledger);
    return {};
}

void CableContext::cleanup()
{
    if (m_data->manager && !manager()->SchemaIsNewer()) {
        removeDuplicateSegments(m_data->ledger->network());
        repairJoints(m_data->ledger->network());
    }
    saveChanges();
    // Saving made them Normal; what was loaded as a snapshot goes on being one.
    m_data->ledger->settleLoaded();
}

void CableContext::concat()
{
    const EntityLedger::Deafness deafness(*m_data->ledger, EntityLedger::Deafness::ToAll);
    linkNetwork(m_data->ledger->network());
}

void CableContext::saveChanges()
{
    const Turn turn = takeTurn();
    CableLedger& ledger = *m_data->ledger;
    SaveRun run(ledger);
    if (const auto manager = m_data->manager) {
        std::as_const(ledger.network()).visit([&](const auto& entities) {
            if (const auto repository = plainRepository<EntityOf<decltype(entities)>>(*manager))
                run.save(*repository);
        });
    }
    finishSaving(run);
}

void CableContext::import(const std::vector<std::shared_ptr<Cable>>& cables)
{
    importWith(cables, {});
}

void CableContext::import(const std::vector<std::shared_ptr<Cable>>& cables, const CableContext& source)
{
    if (source.hasLoadFailed()) {
        qCWarning(lcContext) << "Nothing is imported: the source could not be loaded";
        return;
    }
    RatingsByCable ratings;
    for (const auto& rating : source.Ratings()) {
        if (isLive(*rating))
            ratings[rating->cableID()].push_back(rating);
    }
    importWith(cables, ratings);
}

bool CableContext::isReadyForImport()
{
    QString failure;
    if (!isLoaded() && !hasLoadFailed()) {
        // Without a reload(), which would let go of what the application has attached.
        failure = load();
        if (failure.isEmpty())
            finishLoading({});
        else
            Q_EMIT loadingFailed(failure);
    }
    if (!isLoaded())
        qCWarning(lcContext).noquote() << "Nothing is imported: the network could not be loaded." << failure;
    return isLoaded();
}

void CableContext::importWith(const std::vector<std::shared_ptr<Cable>>& cables, const RatingsByCable& ratings)
{
    const Turn turn = takeTurn();
    if (!isReadyForImport())
        return;
    CableLedger& ledger = *m_data->ledger;
    ledger.adoptLinked();
    // What is marked deleted here may have to come back, or to stay so.
    const auto states = ledger.showMarks();
    CableNetwork network = ledger.network();
    const auto isUnsaved = [&ledger](const QOR::Entities::Entity& entity) { return ledger.hasUnsavedChanges(entity); };
    CableImport import(network, isUnsaved, loadingStrategy() != Enumerations::WithoutImages);
    for (const std::shared_ptr<Cable>& cable : cables)
        import.add(cable, cable ? ratings.value(cable->Id()) : CableImport::Ratings());
    for (const EntityPointer& entity : import.run())
        ledger.adopt(entity);
    {
        const EntityLedger::Deafness deafness(ledger, EntityLedger::Deafness::ToAll);
        linkNetwork(network);
    }
    ledger.hideMarks(states);
}

template <typename T>
CableContext::EntitiesOf<T> CableContext::all() const
{
    const Turn turn = takeTurn();
    return m_data->ledger->shown<T>();
}

CableContext::EntitiesOf<Termination> CableContext::Terminations() const
{
    return all<Termination>();
}

CableContext::EntitiesOf<SegmentType> CableContext::SegmentTypes() const
{
    return all<SegmentType>();
}

CableContext::EntitiesOf<Point> CableContext::Points() const
{
    return all<Point>();
}

CableContext::EntitiesOf<Switchgear> CableContext::Switchgears() const
{
    return all<Switchgear>();
}

CableContext::EntitiesOf<Insulation> CableContext::Insulations() const
{
    return all<Insulation>();
}

CableContext::EntitiesOf<Station> CableContext::Stations() const
{
    return all<Station>();
}

CableContext::EntitiesOf<Segment> CableContext::Segments() const
{
    return all<Segment>();
}

CableContext::EntitiesOf<Cable> CableContext::Cables() const
{
    return all<Cable>();
}

CableContext::EntitiesOf<Owner> CableContext::Owners() const
{
    return all<Owner>();
}

CableContext::EntitiesOf<Phase> CableContext::Phases() const
{
    return all<Phase>();
}

CableContext::EntitiesOf<Rating> CableContext::Ratings() const
{
    return all<Rating>();
}

CableContext::EntitiesOf<Route> CableContext::Routes() const
{
    return all<Route>();
}

CableContext::EntitiesOf<SegmentDetail> CableContext::SegmentDetails() const
{
    return all<SegmentDetail>();
}

} // namespace DataAccess::Context
