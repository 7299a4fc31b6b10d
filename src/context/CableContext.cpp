#include "context/CableContext.h"

#include "context/private/CableImport.h"
#include "context/private/KindLedger.h"
#include "context/private/SaveRun.h"

#include <QSet>

#include <atomic>

namespace DataAccess::Context {

using namespace Cables::Entities;
using namespace QOR::Entities::Enumerations;
using Manager::editorKinds;
using Manager::forEachKind;
using Manager::forEachLoaded;
using CableLedger = KindLedger<CableNetwork>;

namespace {

/// Loads all kinds at once: the worker reads one after the other while the context waits.
class NetworkLoad
{
public:
    /// Queues the load of each kind that @p manager has a repository of.
    explicit NetworkLoad(const Interfaces::IEditorRepositoryManager& manager)
    {
        forEachLoaded(editorKinds, [&](const auto& kind) {
            of(kind).start(kind.name, (manager.*kind.repository)(), m_failed);
            m_started += of(kind).isStarted() ? 1 : 0;
        });
    }

    int countStarted() const { return m_started; }

    /// Waits for the kinds in the order in which they were queued, and calls @p arrived after each. The first that
    /// fails ends it: the others would fail too, each after a time-out, or be of no use. Gives the reason.
    template <typename Callback>
    QString await(const Callback& arrived)
    {
        QString failure;
        forEachLoaded(editorKinds, [&](const auto& kind) {
            if (!failure.isEmpty() || !of(kind).isStarted())
                return;
            failure = of(kind).failure();
            if (failure.isEmpty())
                arrived();
        });
        *m_failed = !failure.isEmpty();
        return failure;
    }

    /// Moves what was read into @p ledger, but for groups of which a repository is missing.
    void giveTo(CableLedger& ledger)
    {
        QSet<int> incomplete;
        forEachLoaded(editorKinds, [&](const auto& kind) {
            const bool isNeeded = kind.loading.isVital && kind.loading.group != Manager::Loading::Alone;
            if (isNeeded && !of(kind).isStarted())
                incomplete.insert(kind.loading.group);
        });
        forEachLoaded(editorKinds, [&](const auto& kind) {
            if (!incomplete.contains(kind.loading.group))
                ledger.load(of(kind).result());
        });
    }

private:
    template <typename... Kind>
    static std::tuple<PendingLoad<typename Kind::Entity>...> loadsOf(const std::tuple<Kind...>& kinds);

    template <typename Kind>
    PendingLoad<typename Kind::Entity>& of(const Kind& /*kind*/)
    {
        return std::get<PendingLoad<typename Kind::Entity>>(m_loads);
    }

    decltype(loadsOf(editorKinds)) m_loads;
    int m_started = 0;
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
    NetworkLoad load(*m_data->manager);
    int done = 0;
    QString failure = load.await([&] { Q_EMIT loadingProgress(++done, load.countStarted()); });
    if (failure.isEmpty())
        load.giveTo(*m_data->ledger);
    return failure;
}

void CableContext::cleanup()
{
    if (m_data->manager && !manager()->SchemaIsNewer()) {
        removeDuplicateSegments(m_data->ledger->network());
        repairJoints(m_data->ledger->network());
    }
    saveChanges();
    // The save has made all Normal; what was loaded as a snapshot is to show that again.
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
        forEachKind(editorKinds, [&](const auto& kind) {
            if (const auto repository = ((*manager).*kind.repository)())
                run.save(kind.name, *repository);
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
        // A reload() would drop what the application has attached.
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
