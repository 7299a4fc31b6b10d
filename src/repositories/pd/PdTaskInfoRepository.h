#pragma once

#include "entities/pd/PdTaskInfo.h"
#include "repositories/EntityRepository.h"

namespace DataAccess::Repositories {

// Made once, in the source file: every file that knows the class would otherwise make it anew.
extern template class EntityRepository<PD::Entities::PdTaskInfo>;

/// What the tasks of reports were measured with; table `pd_task_info`.
class DATAACCESS_EXPORT PdTaskInfoRepository : public EntityRepository<PD::Entities::PdTaskInfo>
{
    Q_OBJECT

public:
    PdTaskInfoRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                         const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent = nullptr);
    ~PdTaskInfoRepository() override;

private:
    static const QString s_tableName;
    static const QString s_getAllQueryString;
    static const QString s_getAllByIdQueryString;
    static const QString s_insertQueryString;
    static const QString s_updateQueryString;
};

} // namespace DataAccess::Repositories
