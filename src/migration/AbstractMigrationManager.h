#pragma once

#include "database/DataAccessExport.h"

#include <QObject>
#include <QStringList>
#include <QVector>

#include <functional>
#include <limits>

namespace DataAccess::Interfaces {
class IDatabase;
}
namespace DataAccess::Database {
class DbWorker;
}

namespace DataAccess::Manager {

class MigrationStep;
struct MigrationModule;
struct TableDefinition;

/**
 * What all migration managers share: the version, the loop over the steps, and the shape of a step. Work on the
 * database runs on the worker's thread, while the caller waits. Nothing here throws; without a worker all fails.
 */
class DATAACCESS_EXPORT AbstractMigrationManager : public QObject
{
    Q_OBJECT

public:
    explicit AbstractMigrationManager(QObject* parent = nullptr);
    ~AbstractMigrationManager() override;

protected:
    /// Runs one step; true when its changes are committed.
    using Step = std::function<bool()>;

    static constexpr quint32 s_invalidVersion = std::numeric_limits<quint32>::max();

    virtual const MigrationModule& module() const = 0;

    /// Connects the database of @p worker; while it is blocked by start-up, up to ten times at 200 ms.
    bool WaitForConnected(Database::DbWorker* worker);
    /// The stored version; s_invalidVersion when it cannot be read.
    quint32 readVersion() const;
    /// Stores @p version; false when that fails, and when the stored version is higher.
    bool setDbVersion(unsigned int version);
    /// Runs the steps that follow the stored version; the first of @p steps reaches version 1. Stops at a failure.
    bool migrate(const QVector<Step>& steps);
    /**
     * Runs @p changes as one job and in one transaction, which is rolled back if anything fails. @p function names the
     * step in the log.
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

    Database::DbWorker* m_worker = nullptr;
    QStringList m_messages;

private:
    quint32 m_from = 0;
};

} // namespace DataAccess::Manager
