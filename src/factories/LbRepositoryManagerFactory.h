#pragma once

#include "factories/IFactory.h"
#include "manager/LbRepositoryManager.h"

#include <QObject>

namespace DataAccess::Factories {

/// Makes managers with the repository of the cable book's measures. They are children of the factory's parent, which
/// does not own them.
class DATAACCESS_EXPORT LbRepositoryManagerFactory : public QObject,
                                                     public Interfaces::IFactory<Manager::LbRepositoryManager>
{
    Q_OBJECT

public:
    /// Owned by @p parent, if any.
    explicit LbRepositoryManagerFactory(QObject* parent = nullptr);
    ~LbRepositoryManagerFactory() override;
    LbRepositoryManagerFactory(const LbRepositoryManagerFactory&) = delete;
    LbRepositoryManagerFactory& operator=(const LbRepositoryManagerFactory&) = delete;

    std::shared_ptr<Manager::LbRepositoryManager> create(Database::DbWorker* worker,
                                                         Enumerations::LoadingStrategies strategy) override;
};

} // namespace DataAccess::Factories
