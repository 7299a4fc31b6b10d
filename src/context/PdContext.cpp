#include "context/PdContext.h"

#include "context/CableContext.h"
#include "context/KindSet.h"
#include "context/PdLinks.h"
#include "manager/AbstractRepositoryManager.h"
#include "manager/IPdRepositoryManager.h"
#include "repositories/cables/RatingRepository.h"
#include "repositories/pd/PdFileRepository.h"
#include "repositories/pd/PdIecOverviewRepository.h"
#include "repositories/pd/PdLbDiagramRepository.h"
#include "repositories/pd/PdMappingEventRepository.h"
#include "repositories/pd/PdReportRepository.h"
#include "repositories/pd/PdSummaryReporsitory.h"
#include "repositories/pd/PdTaskInfoRepository.h"
#include "repositories/pd/PdTaskRepository.h"

#include <exception>

namespace DataAccess::Context {

using namespace PD::Entities;
using namespace QOR::Entities::Enumerations;
using Cables::Entities::Rating;

struct PdContext::Data
{
    std::shared_ptr<Interfaces::IPdRepositoryManager> manager;
    KindSet<ForEachPdKind> kinds;
    int loaded = 0;
    std::weak_ptr<CableContext> cables;
};

PdContext::PdContext(Enumerations::LoadingStrategies strategy,
                     const std::shared_ptr<Interfaces::IPdRepositoryManager>& manager, unsigned int value,
                     QObject* parent)
    : AbstractContext(std::dynamic_pointer_cast<Manager::AbstractRepositoryManager>(manager), strategy, value, parent)
    , m_data(std::make_unique<Data>())
{
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
    emptyAttached();
    load();
    concat();
    copy();
    setIsLoading(false);
    Q_EMIT loadingCompleted();
}

void PdContext::load()
{
    if (!m_data->manager)
        return;
    const Interfaces::IPdRepositoryManager& manager = *m_data->manager;
    try {
        m_data->loaded = 0;
        loadKind<PdTask>(manager.PdTaskRepository());
        loadKind<PdTaskInfo>(manager.PdTaskInfoRepository());
        loadKind<PdReport>(manager.PdReportRepository());
        loadKind<PdIecOverview>(manager.PdIecOverviewRepository());
        loadKind<PdMappingEvent>(manager.PdMappingEventRepository());
        loadKind<PdSummary>(manager.PdSummaryRepository());
        loadKind<Rating>(manager.RatingRepository());
        loadKind<PdLbDiagram>(manager.PdLbDiagramRepository());
    } catch (const std::exception& error) {
        qCCritical(lcContext) << Q_FUNC_INFO << error.what();
        Q_EMIT loadingFailed(QString::fromLocal8Bit(error.what()));
    }
}

template <typename T, typename Repository>
void PdContext::loadKind(const std::shared_ptr<Repository>& repository)
{
    constexpr int kinds = 8;
    if (repository)
        m_data->kinds.of<T>().replace(repository->GetAll());
    Q_EMIT loadingProgress(++m_data->loaded, kinds);
}

void PdContext::loadFiles(const std::vector<QUuid>& reportIds)
{
    const Turn turn = takeTurn();
    setIsLoading(true);
    try {
        const auto repository = m_data->manager ? m_data->manager->PdFileRepository() : nullptr;
        int done = 0;
        for (const QUuid& id : reportIds) {
            if (repository) {
                const auto files = repository->GetByReportId(std::vector<QUuid>{id}, false);
                EntityKind<PdFile>& kind = m_data->kinds.of<PdFile>();
                kind.merge(files);
                kind.forgetIf([&](const PdFile& file) { return file.ReportId() == id && !files.contains(file.Id()); });
            }
            Q_EMIT loadingProgress(++done, static_cast<int>(reportIds.size()));
        }
    } catch (const std::exception& error) {
        qCCritical(lcContext) << Q_FUNC_INFO << error.what();
        Q_EMIT loadingFailed(QString::fromLocal8Bit(error.what()));
    }
    concat();
    copy();
    setIsLoading(false);
    Q_EMIT loadingCompleted();
}

void PdContext::loadFiles()
{
    const Turn turn = takeTurn();
    const auto reports = Reports();
    loadFiles(std::vector<QUuid>(reports.keyBegin(), reports.keyEnd()));
}

void PdContext::concat()
{
    linkResults(m_data->kinds.known(added()));
    linkToCables();
}

void PdContext::linkToCables()
{
    const Turn turn = takeTurn();
    if (const auto context = m_data->cables.lock())
        linkTasks(m_data->kinds.known<PdTask>(added()), context->Cables(), context->Stations());
}

void PdContext::copy()
{
    // What the application has changed keeps its state: files are loaded while it works on the rest.
    m_data->kinds.forEach([this](const auto& kind) { takeInBesideAdded(kind.entities()); });
}

void PdContext::saveChanges()
{
    const Turn turn = takeTurn();
    SavePass pass = beginSaving();
    if (m_data->manager) {
        processIecOverview(pass);
        processMappingEvents(pass);
        processSummary(pass);
        processFiles(pass);
        processReports(pass);
        processTasks(pass);
        processTaskInfo(pass);
        processRatings(pass);
        processLbDiagram(pass);
    }
    resetStates(pass);
    m_data->kinds.forEach([&pass](auto& kind) { kind.noteHiddenMarks(pass); });
    finishSaving(pass);
}

template <typename T, typename Repository>
void PdContext::saveKind(const std::shared_ptr<Repository>& repository, SavePass& pass)
{
    if (repository)
        m_data->kinds.of<T>().save(*repository, pass);
}

void PdContext::processIecOverview(SavePass& pass)
{
    saveKind<PdIecOverview>(m_data->manager->PdIecOverviewRepository(), pass);
}

void PdContext::processMappingEvents(SavePass& pass)
{
    saveKind<PdMappingEvent>(m_data->manager->PdMappingEventRepository(), pass);
}

void PdContext::processSummary(SavePass& pass)
{
    saveKind<PdSummary>(m_data->manager->PdSummaryRepository(), pass);
}

void PdContext::processFiles(SavePass& pass)
{
    saveKind<PdFile>(m_data->manager->PdFileRepository(), pass);
}

void PdContext::processReports(SavePass& pass)
{
    saveKind<PdReport>(m_data->manager->PdReportRepository(), pass);
}

void PdContext::processTasks(SavePass& pass)
{
    saveKind<PdTask>(m_data->manager->PdTaskRepository(), pass);
}

void PdContext::processTaskInfo(SavePass& pass)
{
    saveKind<PdTaskInfo>(m_data->manager->PdTaskInfoRepository(), pass);
}

void PdContext::processRatings(SavePass& pass)
{
    saveKind<Rating>(m_data->manager->RatingRepository(), pass);
}

void PdContext::processLbDiagram(SavePass& pass)
{
    saveKind<PdLbDiagram>(m_data->manager->PdLbDiagramRepository(), pass);
}

template <typename T>
PdContext::EntitiesOf<T> PdContext::all() const
{
    const Turn turn = takeTurn();
    return m_data->kinds.known<T>(added());
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
