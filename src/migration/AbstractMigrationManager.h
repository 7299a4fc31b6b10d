#pragma once

#include "migration/IMigrationManager.h"

#include <QObject>
#include <QStringList>

namespace DataAccess::Manager {

struct MigrationModule;
struct MigrationStep;

/**
 * All that migration managers share: the version, the loop over the steps, and the shape of a step. A manager adds its
 * module, which has the steps. Work on the database runs on the worker's thread, while the caller waits. Nothing here
 * throws; without a worker all fails.
 */
class DATAACCESS_EXPORT AbstractMigrationManager : public QObject, public Interfaces::IMigrationManager
{
    Q_OBJECT

public:
    /// Has no worker yet: see setDbWorker().
    explicit AbstractMigrationManager(QObject* parent = nullptr);
    ~AbstractMigrationManager() override;

    void setDbWorker(Database::DbWorker* worker) override;
    quint32 DbVersion() const override;
    quint32 InvalidVersion() const override;
    quint32 ExpectedVersion() const override;
    bool WaitForConnected() override;
    bool Migrate() override;
    quint32 MigrationSteps() const override;
    QString feature() override;
    /// The messages of every Migrate() so far.
    QStringList migrationMessages() override;

Q_SIGNALS:
    /// A step of Migrate() is done and its version stored; on the thread that migrates.
    void stepCompleted(quint32 version);

protected:
    /// The schema that this manager brings up to date.
    virtual const MigrationModule& module() const = 0;

    /**
     * Connects the database of @p worker, and tries up to ten times, 200 ms apart, while it is blocked by start-up. A
     * server that does not answer is asked once.
     */
    bool WaitForConnected(Database::DbWorker* worker);
    /// What migrationMessages() returns.
    QStringList m_messages;

private:
    /// Stores @p version, unless another program has come further meanwhile; false when that fails.
    bool setDbVersion(unsigned int version);
    /// Runs @p step as one job and in one transaction, which is rolled back if anything fails; a step that another
    /// program has done meanwhile is left out. Before the first one the backup is made.
    bool runStep(const MigrationStep& step);

    Database::DbWorker* m_worker = nullptr;
    /// The version that the next step starts from, and whether the backup for it and for those after it is made.
    quint32 m_from = 0;
    bool m_isPrepared = false;
};

} // namespace DataAccess::Manager
