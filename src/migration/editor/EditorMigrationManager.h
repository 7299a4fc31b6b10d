#pragma once

#include "migration/AbstractMigrationManager.h"

namespace DataAccess::Manager {

/// Migrates the tables of the cable network, of its ratings and of its links to the cable book.
class DATAACCESS_EXPORT EditorMigrationManager : public AbstractMigrationManager
{
    Q_OBJECT

public:
    /// Has no worker yet: see setDbWorker().
    explicit EditorMigrationManager(QObject* parent = nullptr);
    ~EditorMigrationManager() override;

    /// Begins without messages: migrationMessages() returns those of the last call.
    bool Migrate() override;

    /// The steps, and the layouts that they lead to.
    static const MigrationModule& schema();

private:
    const MigrationModule& module() const override;
};

} // namespace DataAccess::Manager
