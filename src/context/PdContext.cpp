#include "context/PdContext.h"

#include "context/CableContext.h"
#include "context/private/KindLedger.h"
#include "context/private/SaveRun.h"

namespace DataAccess::Context {

using namespace PD::Entities;
using Cables::Entities::Rating;
using Database::FailureWatch;
using Manager::pdKinds;
using PdLedger = KindLedger<PdNetwork>;

struct PdContext::Data
{
    std::shared_ptr<PdLedger> ledger;
    std::shared_ptr<Interfaces::IPdRepositoryManager> manager;
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
    // A task keeps its cable alive, so it must drop one of the former network at once.
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
    const char* const function = Q_FUNC_INFO;
    QString failure;
    int done = 0;
    // The first kind that cannot be read ends the load.
    Manager::forEachLoaded(pdKinds, [&](const auto& kind) {
        if (!failure.isEmpty())
            return;
        if (const auto repository = (manager.*kind.repository)()) {
            const FailureWatch watch;
            m_data->ledger->load(guarded(function, [&] { return repository->GetAll(); }));
            failure = failureText(kind.name, watch);
        }
        if (failure.isEmpty())
            Q_EMIT loadingProgress(++done, Manager::countLoaded(pdKinds));
    });
    return failure;
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
            failure = failureText(Manager::kindOf<PdFile>(pdKinds).name, watch);
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
    // Links depend on the marks, which entities may hide.
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
        Manager::forEachKind(pdKinds, [&](const auto& kind) {
            if (const auto repository = ((*m_data->manager).*kind.repository)())
                run.save<typename std::decay_t<decltype(kind)>::Entity>(kind.name, *repository);
        });
    }
    finishSaving(run);
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
