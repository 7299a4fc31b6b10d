#pragma once

#include "migration/IMigrationManager.h"

#include <QObject>
#include <QStringList>
#include <QVector>

#include <functional>

namespace DataAccess::Interfaces {
class IDatabase;
}

namespace DataAccess::Manager {

class MigrationStep;
struct MigrationModule;
struct TableDefinition;

/**
 * All that migration managers share: the version, the loop over the steps, and the shape of a step. A manager adds what
 * sets it apart, and the steps. Work on the database runs on the worker's thread, while the caller waits. Nothing here
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
    /// Runs one step; true when its changes are committed.
    using Step = std::function<bool()>;

    /// The schema that this manager brings up to date.
    virtual const MigrationModule& module() const = 0;
    /// The steps, as many as the expected version says; the first one reaches version 1.
    virtual QVector<Step> steps() = 0;
    /// Throws when the database shows that it cannot be at @p version, and the steps after it would discard rows.
    virtual void requireCredible(MigrationStep& step, quint32 version);

    /**
     * Connects the database of @p worker; while it is blocked by start-up, up to ten times at 200 ms. A server that
     * does not answer is asked once.
     */
    bool WaitForConnected(Database::DbWorker* worker);
    /// Stores @p version, unless another program has come further meanwhile; false when that fails.
    bool setDbVersion(unsigned int version);
    /**
     * Runs @p changes as one job and in one transaction, which is rolled back if anything fails; a step that another
     * program has done meanwhile is left out. Before the first one the backup is made. @p function names the step in
     * the log.
     */
    bool runStep(const char* function, const std::function<void(MigrationStep&)>& changes);

    /**
     * Creates a table, and the sequence of its ids, unless @p existingTables names it. Returns the number of failures,
     * which are logged; nothing is issued after the first.
     */
    unsigned int createTable(Interfaces::IDatabase& db, const QStringList& existingTables, QStringList& statementParts,
                             const QString& tableName);
    /// The same as part of a step, which ends if it fails.
    void createTable(MigrationStep& step, const TableDefinition& table);
    /// Creates the tables that hold the versions, where they are missing.
    void createVersionTables(MigrationStep& step);

    /// What migrationMessages() returns.
    QStringList m_messages;

private:
    Database::DbWorker* m_worker = nullptr;
    quint32 m_from = 0;
    bool m_isPrepared = false;
};

} // namespace DataAccess::Manager
