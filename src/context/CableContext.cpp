#include "context/CableContext.h"

#include "context/CableImport.h"
#include "context/CableNetwork.h"
#include "context/CableRepositories.h"
#include "context/KindSet.h"
#include "context/NetworkLinks.h"
#include "context/PendingLoad.h"
#include "context/SegmentCleanup.h"
#include "manager/EditorRepositoryManager.h"

#include <exception>
#include <utility>

namespace DataAccess::Context {

using namespace Cables::Entities;
using namespace QOR::Entities::Enumerations;

struct CableContext::Data
{
    std::shared_ptr<Interfaces::IEditorRepositoryManager> manager;
    KindSet<ForEachCableKind> kinds;
    ForEachCableKind<PendingLoad> loads;
    bool isLoaded = false;

    template <typename... T>
    void start()
    {
        (std::get<PendingLoad<T>>(loads).start(plainRepository<T>(*manager)), ...);
    }

    template <typename... T>
    bool arePending() const
    {
        return (std::get<PendingLoad<T>>(loads).isFilled() && ...);
    }

    int countPending() const
    {
        return std::apply([](const auto&... load) { return (int(load.isFilled()) + ...); }, loads);
    }

    /// Takes what the loads of the kinds gave, one after the other, and calls @p taken after each.
    template <typename... T, typename Callback>
    void take(const Callback& taken)
    {
        ((kinds.of<T>().replace(std::get<PendingLoad<T>>(loads).take()), taken()), ...);
    }
};

CableContext::CableContext(Enumerations::LoadingStrategies strategy,
                           const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, unsigned int value,
                           QObject* parent)
    : AbstractContext(manager, strategy, value, parent)
    , m_data(std::make_unique<Data>())
{
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
    try {
        insertDefaults(*m_data->manager);
    } catch (const std::exception& error) {
        qCCritical(lcContext) << Q_FUNC_INFO << error.what();
    }
}

void CableContext::reload()
{
    const Turn turn = takeTurn();
    setIsLoading(true);
    m_data->kinds.forEach([](auto& kind) { kind.replace({}); });
    emptyAttached();
    load();
    cleanup();
    concat();
    copy();
    setIsLoading(false);
    Q_EMIT loadingCompleted();
}

void CableContext::load()
{
    if (!m_data->manager)
        return;
    try {
        Data& data = *m_data;
        data.start<Point, Segment, SegmentType, Insulation, Switchgear, Termination, Owner, SegmentDetail, Cable,
                   Rating, Route, Station, Phase>();
        const int total = data.countPending();
        int done = 0;
        const auto taken = [&] { Q_EMIT loadingProgress(++done, total); };
        if (data.arePending<SegmentDetail, SegmentType, Insulation>())
            data.take<SegmentDetail, Insulation, SegmentType>(taken);
        if (data.arePending<Segment, Phase>())
            data.take<Segment, Phase>(taken);
        if (data.arePending<Route, Point>())
            data.take<Route, Point>(taken);
        if (data.arePending<Cable, Owner, Station, Switchgear, Termination>())
            data.take<Cable, Owner, Station, Switchgear, Termination, Rating>(taken);
        data.isLoaded = true;
    } catch (const std::exception& error) {
        qCCritical(lcContext) << Q_FUNC_INFO << error.what();
        Q_EMIT loadingFailed(QString::fromLocal8Bit(error.what()));
    }
}

void CableContext::cleanup()
{
    cleanupDuplicateSegments();
    cleanupInconsistentJoints();
    emptyAttached();
    takeIn(m_data->kinds.of<Segment>().entities());
    takeIn(m_data->kinds.of<SegmentDetail>().entities());
    saveChanges();
    // Saving made them Normal; what was loaded as a snapshot goes on being one.
    m_data->kinds.of<Segment>().showMarks();
    m_data->kinds.of<SegmentDetail>().showMarks();
}

void CableContext::cleanupDuplicateSegments()
{
    if (mayCleanUp())
        removeDuplicateSegments(m_data->kinds.known({}));
}

void CableContext::cleanupInconsistentJoints()
{
    if (mayCleanUp())
        repairJoints(m_data->kinds.known({}));
}

bool CableContext::mayCleanUp() const
{
    return m_data->manager && !manager()->SchemaIsNewer();
}

void CableContext::concat()
{
    linkNetwork(m_data->kinds.known({}));
}

void CableContext::copy()
{
    emptyAttached();
    m_data->kinds.forEach([this](const auto& kind) { takeIn(kind.entities()); });
    const Entities loaded = attached();
    for (const EntityPointer& entity : loaded) {
        if (entity->EntityState() != Snapshot)
            entity->SetEntityState(Normal);
    }
}

void CableContext::saveChanges()
{
    const Turn turn = takeTurn();
    SavePass pass = beginSaving();
    if (const auto manager = m_data->manager) {
        m_data->kinds.forEach([&](auto& kind) {
            if (const auto repository = plainRepository<typename std::decay_t<decltype(kind)>::Entity>(*manager))
                kind.save(*repository, pass);
        });
    }
    resetStates(pass);
    m_data->kinds.forEach([&pass](auto& kind) { kind.noteHiddenMarks(pass); });
    finishSaving(pass);
}

void CableContext::import(const std::vector<std::shared_ptr<Cable>>& cables)
{
    importWith(cables, {});
}

void CableContext::import(const std::vector<std::shared_ptr<Cable>>& cables, const CableContext& source)
{
    RatingsByCable ratings;
    for (const auto& rating : source.Ratings()) {
        if (isLive(*rating))
            ratings[rating->cableID()].push_back(rating);
    }
    importWith(cables, ratings);
}

void CableContext::importWith(const std::vector<std::shared_ptr<Cable>>& cables, const RatingsByCable& ratings)
{
    const Turn turn = takeTurn();
    if (!m_data->isLoaded) {
        // Without a reload(), which would let go of what the application has attached.
        load();
        m_data->kinds.forEach([this](const auto& kind) { takeInBesideAdded(kind.entities()); });
    }
    // What is marked deleted here may have to come back, or to stay so.
    m_data->kinds.forEach([](auto& kind) { kind.showMarks(); });
    CableNetwork network = m_data->kinds.known(added());
    CableImport import(network, loadingStrategy() != Enumerations::WithoutImages);
    for (const std::shared_ptr<Cable>& cable : cables)
        import.add(cable, cable ? ratings.value(cable->Id()) : CableImport::Ratings());
    for (const EntityPointer& entity : import.run())
        attachInPlace(entity);
    linkNetwork(network);
}

template <typename T>
CableContext::EntitiesOf<T> CableContext::all() const
{
    const Turn turn = takeTurn();
    return m_data->kinds.known<T>(added());
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
