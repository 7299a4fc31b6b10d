#pragma once

#include "migration/AbstractMigrationManager.h"

namespace DataAccess::Manager {

/// Migrates the tables of the partial-discharge results.
class DATAACCESS_EXPORT PdMigrationManager : public AbstractMigrationManager
{
    Q_OBJECT

public:
    /// Has no worker yet: see setDbWorker().
    explicit PdMigrationManager(QObject* parent = nullptr);
    ~PdMigrationManager() override;

    /// The steps, and the layouts that they lead to.
    static const MigrationModule& schema();

private:
    const MigrationModule& module() const override;
};

} // namespace DataAccess::Manager
