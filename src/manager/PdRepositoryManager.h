#pragma once

#include "manager/AbstractRepositoryManager.h"
#include "manager/IPdRepositoryManager.h"

namespace DataAccess::Manager {

/**
 * Owns the repositories of partial-discharge results, a rating repository of its own, and the cached views over tasks,
 * reports and files. Another repository comes with a new, empty view; the one already set keeps its view and what that
 * has cached.
 */
class DATAACCESS_EXPORT PdRepositoryManager : public AbstractRepositoryManager, public Interfaces::IPdRepositoryManager
{
    Q_OBJECT

public:
    /// Has no repositories yet. Its owner is whoever shares it, not @p parent.
    explicit PdRepositoryManager(QObject* parent = nullptr);
    ~PdRepositoryManager() override;
    PdRepositoryManager(const PdRepositoryManager&) = delete;
    PdRepositoryManager& operator=(const PdRepositoryManager&) = delete;

    /// See IPdRepositoryManager; setting shares the ownership, before the manager is shared.
    std::shared_ptr<Repositories::PdFileRepository> PdFileRepository() const override;
    std::shared_ptr<Interfaces::IRepository<PD::Entities::PdFile>> PdFileRepositoryCached() const override;
    void SetPdFileRepository(const std::shared_ptr<Repositories::PdFileRepository>& repository);

    /// See IPdRepositoryManager; setting shares the ownership, before the manager is shared.
    std::shared_ptr<Repositories::PdReportRepository> PdReportRepository() const override;
    std::shared_ptr<Interfaces::IRepository<PD::Entities::PdReport>> PdReportRepositoryCached() const override;
    void SetPdReportRepository(const std::shared_ptr<Repositories::PdReportRepository>& repository);

    /// See IPdRepositoryManager; setting shares the ownership, before the manager is shared.
    std::shared_ptr<Repositories::PdTaskRepository> PdTaskRepository() const override;
    std::shared_ptr<Interfaces::IRepository<PD::Entities::PdTask>> PdTaskRepositoryCached() const override;
    void SetPdTaskRepository(const std::shared_ptr<Repositories::PdTaskRepository>& repository);

    /// See IPdRepositoryManager; setting shares the ownership, before the manager is shared.
    std::shared_ptr<Repositories::PdIecOverviewRepository> PdIecOverviewRepository() const override;
    void SetPdIecOverviewRepository(const std::shared_ptr<Repositories::PdIecOverviewRepository>& repository);

    /// See IPdRepositoryManager; setting shares the ownership, before the manager is shared.
    std::shared_ptr<Repositories::PdMappingEventRepository> PdMappingEventRepository() const override;
    void SetPdMappingEventRepository(const std::shared_ptr<Repositories::PdMappingEventRepository>& repository);

    /// See IPdRepositoryManager; setting shares the ownership, before the manager is shared.
    std::shared_ptr<Repositories::PdLbDiagramRepository> PdLbDiagramRepository() const override;
    void SetPdLbDiagramRepository(const std::shared_ptr<Repositories::PdLbDiagramRepository>& repository);

    /// See IPdRepositoryManager; setting shares the ownership, before the manager is shared.
    std::shared_ptr<Repositories::PdSummaryReporsitory> PdSummaryRepository() const override;
    void SetPdSummaryRepository(const std::shared_ptr<Repositories::PdSummaryReporsitory>& repository);

    /// See IPdRepositoryManager; setting shares the ownership, before the manager is shared.
    std::shared_ptr<Repositories::PdTaskInfoRepository> PdTaskInfoRepository() const override;
    void SetPdTaskInfoRepository(const std::shared_ptr<Repositories::PdTaskInfoRepository>& repository);

    /// See IPdRepositoryManager; setting shares the ownership, before the manager is shared.
    std::shared_ptr<Repositories::RatingRepository> RatingRepository() const override;
    void SetRatingRepository(const std::shared_ptr<Repositories::RatingRepository>& repository);

private:
    struct Data;

    std::unique_ptr<Data> m_data;
};

} // namespace DataAccess::Manager
