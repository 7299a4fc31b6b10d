#include "context/PdContext.h"

#include "context/CableContext.h"
#include "context/Guarded.h"
#include "context/KindLedger.h"
#include "context/PdLinks.h"
#include "context/PdNetwork.h"
#include "context/SaveRun.h"
#include "manager/AbstractRepositoryManager.h"
#include "manager/IPdRepositoryManager.h"
#include "repositories/cables/RatingRepository.h"
#include "repositories/pd/PdFileRepository.h"
#include "repositories/pd/PdReportRepository.h"
#include "repositories/pd/PlainRepositories.h"

namespace DataAccess::Context {

using namespace PD::Entities;
using namespace QOR::Entities::Enumerations;
using Cables::Entities::Rating;
using Database::FailureWatch;
using PdLedger = KindLedger<ForEachPdKind>;

struct PdContext::Data
{
    std::shared_ptr<PdLedger> ledger;
    std::shared_ptr<Interfaces::IPdRepositoryManager> manager;
    int loaded = 0;
    std::weak_ptr<CableContext> cables;
};

PdContext::PdContext(Enumerations::LoadingStrategies strategy,
                     const std::shared_ptr<Interfaces::IPdRepositoryManager>& manager, unsigned int value,
                     QObject* parent)
    : AbstractContext(std::dynamic_pointer_cast<Manager::AbstractRepositoryManager>(manager), strategy, value, parent,
                      std::make_shared<PdLedger>())
    , m_data(std::make_unique<Data>())
{
    m_data->ledger = std::static_pointer_cast<PdLedger>(ledger());
    m_data->manager = manager;
}

PdContext::~PdContext() = default;

void PdContext::SetCableContext(const std::shared_ptr<CableContext>& context)
{
    m_data->cables = context;
    if (!context)
        return;
    shareTurns(*context);
    // A task keeps its cable alive: one of a network that was loaded before has to be let go of at once.
    connect(context.get(), &CableContext::loadingCompleted, this, &PdContext::linkToCables, Qt::DirectConnection);
}

void PdContext::reload()
{
    const Turn turn = takeTurn();
    setIsLoading(true);
    m_data->ledger->clear();
    const QString failure = load();
    if (!failure.isEmpty())
        m_data->ledger->clear();
    finishLoading(failure);
    concat();
    setIsLoading(false);
    Q_EMIT loadingCompleted();
}

QString PdContext::load()
{
    if (!m_data->manager)
        return {};
    const Interfaces::IPdRepositoryManager& manager = *m_data->manager;
    m_data->loaded = 0;
    QString failure;
    // The first kind that cannot be read ends the load.
    static_cast<void>(loadKind<PdTask>(manager.PdTaskRepository(), failure) &&
                      loadKind<PdTaskInfo>(manager.PdTaskInfoRepository(), failure) &&
                      loadKind<PdReport>(manager.PdReportRepository(), failure) &&
                      loadKind<PdIecOverview>(manager.PdIecOverviewRepository(), failure) &&
                      loadKind<PdMappingEvent>(manager.PdMappingEventRepository(), failure) &&
                      loadKind<PdSummary>(manager.PdSummaryRepository(), failure) &&
                      loadKind<Rating>(manager.RatingRepository(), failure) &&
                      loadKind<PdLbDiagram>(manager.PdLbDiagramRepository(), failure));
    return failure;
}

template <typename T, typename Repository>
bool PdContext::loadKind(const std::shared_ptr<Repository>& repository, QString& failure)
{
    constexpr int kinds = 8;
    if (repository) {
        const FailureWatch watch;
        m_data->ledger->load<T>(guarded(Q_FUNC_INFO, [&] { return repository->GetAll(); }));
        failure = failureText<T>(watch);
    }
    if (failure.isEmpty())
        Q_EMIT loadingProgress(++m_data->loaded, kinds);
    return failure.isEmpty();
}

void PdContext::loadFiles(const std::vector<QUuid>& reportIds)
{
    const Turn turn = takeTurn();
    setIsLoading(true);
    const auto repository = m_data->manager ? m_data->manager->PdFileRepository() : nullptr;
    QString failure;
    int done = 0;
    for (const QUuid& id : reportIds) {
        const FailureWatch watch;
        if (repository)
            loadFilesOf(id, *repository);
        if (failure.isEmpty())
            failure = failureText<PdFile>(watch);
        if (watch.isUnavailable())
            break;
        Q_EMIT loadingProgress(++done, static_cast<int>(reportIds.size()));
    }
    if (!failure.isEmpty())
        Q_EMIT loadingFailed(failure);
    concat();
    setIsLoading(false);
    Q_EMIT loadingCompleted();
}

void PdContext::loadFilesOf(const QUuid& reportId, Repositories::PdFileRepository& repository)
{
    const FailureWatch watch;
    const auto files =
        guarded(Q_FUNC_INFO, [&] { return repository.GetByReportId(std::vector<QUuid>{reportId}, false); });
    if (watch.failed())
        return;
    PdLedger& ledger = *m_data->ledger;
    ledger.merge(files);
    const EntitiesOf<PdFile> known = ledger.network().of<PdFile>();
    for (const auto& file : known) {
        if (file->ReportId() == reportId && !files.contains(file->Id()) && !ledger.hasUnsavedChanges(*file))
            ledger.forget(*file);
    }
}

void PdContext::loadFiles()
{
    const Turn turn = takeTurn();
    const auto reports = Reports();
    loadFiles(std::vector<QUuid>(reports.keyBegin(), reports.keyEnd()));
}

void PdContext::concat()
{
    PdLedger& ledger = *m_data->ledger;
    ledger.adoptLinked();
    // What is marked deleted is not listed, though it may not show that.
    const auto states = ledger.showMarks();
    {
        const EntityLedger::Deafness deafness(ledger, EntityLedger::Deafness::ToAll);
        linkResults(ledger.network());
    }
    ledger.hideMarks(states);
    linkToCables();
}

void PdContext::linkToCables()
{
    const Turn turn = takeTurn();
    const auto context = m_data->cables.lock();
    if (!context)
        return;
    const EntityLedger::Deafness deafness(*m_data->ledger, EntityLedger::Deafness::ToAll);
    linkTasks(m_data->ledger->network().of<PdTask>(), context->Cables(), context->Stations());
}

void PdContext::saveChanges()
{
    const Turn turn = takeTurn();
    SaveRun run(*m_data->ledger);
    if (m_data->manager) {
        processIecOverview(run);
        processMappingEvents(run);
        processSummary(run);
        processFiles(run);
        processReports(run);
        processTasks(run);
        processTaskInfo(run);
        processRatings(run);
        processLbDiagram(run);
    }
    finishSaving(run);
}

template <typename T, typename Repository>
void PdContext::saveKind(const std::shared_ptr<Repository>& repository, SaveRun& run)
{
    if (repository)
        run.save<T>(*repository);
}

void PdContext::processIecOverview(SaveRun& run)
{
    saveKind<PdIecOverview>(m_data->manager->PdIecOverviewRepository(), run);
}

void PdContext::processMappingEvents(SaveRun& run)
{
    saveKind<PdMappingEvent>(m_data->manager->PdMappingEventRepository(), run);
}

void PdContext::processSummary(SaveRun& run)
{
    saveKind<PdSummary>(m_data->manager->PdSummaryRepository(), run);
}

void PdContext::processFiles(SaveRun& run)
{
    saveKind<PdFile>(m_data->manager->PdFileRepository(), run);
}

void PdContext::processReports(SaveRun& run)
{
    saveKind<PdReport>(m_data->manager->PdReportRepository(), run);
}

void PdContext::processTasks(SaveRun& run)
{
    saveKind<PdTask>(m_data->manager->PdTaskRepository(), run);
}

void PdContext::processTaskInfo(SaveRun& run)
{
    saveKind<PdTaskInfo>(m_data->manager->PdTaskInfoRepository(), run);
}

void PdContext::processRatings(SaveRun& run)
{
    saveKind<Rating>(m_data->manager->RatingRepository(), run);
}

void PdContext::processLbDiagram(SaveRun& run)
{
    saveKind<PdLbDiagram>(m_data->manager->PdLbDiagramRepository(), run);
}

template <typename T>
PdContext::EntitiesOf<T> PdContext::all() const
{
    const Turn turn = takeTurn();
    return m_data->ledger->shown<T>();
}

PdContext::EntitiesOf<PdTask> PdContext::Tasks() const
{
    return all<PdTask>();
}

PdContext::EntitiesOf<PdTaskInfo> PdContext::TaskInfos() const
{
    return all<PdTaskInfo>();
}

PdContext::EntitiesOf<PdReport> PdContext::Reports() const
{
    return all<PdReport>();
}

PdContext::EntitiesOf<PdFile> PdContext::Files() const
{
    return all<PdFile>();
}

PdContext::EntitiesOf<PdIecOverview> PdContext::IecOverviews() const
{
    return all<PdIecOverview>();
}

PdContext::EntitiesOf<PdMappingEvent> PdContext::MappingEvents() const
{
    return all<PdMappingEvent>();
}

PdContext::EntitiesOf<PdSummary> PdContext::Summaries() const
{
    return all<PdSummary>();
}

PdContext::EntitiesOf<Rating> PdContext::Ratings() const
{
    return all<Rating>();
}

PdContext::EntitiesOf<PdLbDiagram> PdContext::LbDiagrams() const
{
    return all<PdLbDiagram>();
}

} // namespace DataAccess::Context
