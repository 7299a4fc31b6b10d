#pragma once

#include "manager/AbstractRepositoryManager.h"
#include "manager/ILbRepositoryManager.h"

namespace DataAccess::Manager {

/// Owns the repository of the cable book's measures and the cached view over it.
class DATAACCESS_EXPORT LbRepositoryManager : public AbstractRepositoryManager, public Interfaces::ILbRepositoryManager
{
    Q_OBJECT

public:
    /// Has no repositories yet. Its owner is whoever shares it, not @p parent.
    explicit LbRepositoryManager(QObject* parent = nullptr);
    ~LbRepositoryManager() override;
    LbRepositoryManager(const LbRepositoryManager&) = delete;
    LbRepositoryManager& operator=(const LbRepositoryManager&) = delete;

    std::shared_ptr<Measures> CablebookMeasuresRepository() const override;
    std::shared_ptr<Measures> CablebookMeasuresRepositoryCached() const override;
    void SetCablebookMeasuresRepository(const std::shared_ptr<Measures>& repository) override;

private:
    struct Data;

    std::unique_ptr<Data> m_data;
};

} // namespace DataAccess::Manager
