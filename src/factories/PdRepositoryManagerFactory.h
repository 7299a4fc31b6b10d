#pragma once

#include "factories/IFactory.h"
#include "manager/PdRepositoryManager.h"

#include <QObject>

namespace DataAccess::Factories {

/// Makes managers with the repositories of partial-discharge results. They have no parent.
class DATAACCESS_EXPORT PdRepositoryManagerFactory : public QObject,
                                                     public Interfaces::IFactory<Manager::PdRepositoryManager>
{
    Q_OBJECT

public:
    /// Owned by @p parent, if any.
    explicit PdRepositoryManagerFactory(QObject* parent = nullptr);
    ~PdRepositoryManagerFactory() override;
    PdRepositoryManagerFactory(const PdRepositoryManagerFactory&) = delete;
    PdRepositoryManagerFactory& operator=(const PdRepositoryManagerFactory&) = delete;

    std::shared_ptr<Manager::PdRepositoryManager> create(Database::DbWorker* worker,
                                                         Enumerations::LoadingStrategies strategy) override;
};

} // namespace DataAccess::Factories
