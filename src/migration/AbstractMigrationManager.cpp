#include "migration/AbstractMigrationManager.h"

#include "database/DbException.h"
#include "database/DbWorker.h"
#include "database/Failure.h"
#include "database/IDatabase.h"
#include "database/Task.h"
#include "database/backends/Backend.h"
#include "migration/Backup.h"
#include "migration/MigrationModule.h"
#include "migration/MigrationStep.h"
#include "migration/SchemaVersion.h"

#include <QElapsedTimer>
#include <QThread>

#include <exception>
#include <limits>
#include <utility>

namespace DataAccess::Manager {

using Database::DbWorker;
using Database::Failure;
using Database::FailureWatch;
using Exceptions::ExecutionException;
using Exceptions::NotOpenException;
using Interfaces::IDatabase;

namespace {

constexpr quint32 invalidVersion = std::numeric_limits<quint32>::max();

/// Runs @p job on @p worker and waits for its result; @p failed without a worker and when the job throws.
template <typename Result>
Result run(DbWorker* worker, const MigrationModule& module, const char* function, Result failed,
           const std::function<Result(IDatabase&)>& job)
{
    try {
        if (worker == nullptr)
            throw NotOpenException("there is no database");
        Database::Task<Result> task([&](IDatabase& db) {
            // Told here, it comes after what the job itself has told.
            try {
                return job(db);
            } catch (const std::exception& error) {
                module.tellFailure(function, error);
                return failed;
            }
        });
        worker->insert(task.toJob());
        return task.Result();
    } catch (const std::exception& error) {
        module.tellFailure(function, error);
        return failed;
    }
}

/// Whether a refusal may be over soon. Only a server starts up: a file is there or not, and SQLite itself has waited
/// for a locked one.
bool mayComeUp(IDatabase& db)
{
    const bool refusedFile = !Database::Backend::of(db).isServer() && !db.OpenError().isEmpty();
    return db.WasBlockedByStartup() && !refusedFile;
}

bool connectPatiently(IDatabase& db)
{
    constexpr int attempts = 10;
    constexpr unsigned long pause = 200;
    // Less than the driver waits for a server that does not answer.
    constexpr qint64 patience = 4000;
    QElapsedTimer waiting;
    waiting.start();
    for (int attempt = 1; !db.Connect(); ++attempt) {
        if (attempt == attempts || !mayComeUp(db) || waiting.hasExpired(patience))
            return false;
        QThread::msleep(pause);
    }
    return true;
}

void requireConnection(IDatabase& db)
{
    if (!db.Connect())
        throw NotOpenException(("the database cannot be opened: " + db.OpenError().toLocal8Bit()).constData(), true);
}

QByteArray reason(const Database::Transaction& transaction)
{
    return transaction.lastError().toLocal8Bit();
}

/// Makes other programs wait that migrate the same database; on SQLite the transaction has done that by itself.
void lockOthersOut(StatementRunner& statements)
{
    if (!statements.isPostgres())
        return;
    statements.execute(QStringLiteral("SET LOCAL lock_timeout = '10s'"));
    statements.execute(QStringLiteral("SELECT pg_advisory_xact_lock(hashtext('DataAccess migration'))"));
}

/**
 * Runs @p work on the database at version @p from, in a transaction of its own. Two programs that open one database at
 * the same time take turns: what the other has done meanwhile is not done again, as an early step on the tables of a
 * late one would discard rows.
 */
bool inTransaction(IDatabase& db, const MigrationModule& module, quint32 from,
                   const std::function<void(MigrationStep&, Backup&)>& work)
{
    requireConnection(db);
    Database::Transaction transaction = db.WriteTransaction();
    if (!transaction.isOpen())
        throw NotOpenException(("the transaction cannot be started: " + reason(transaction)).constData(),
                               transaction.isUnavailable());
    MigrationStep step(db, module);
    lockOthersOut(step);
    const quint32 stored = SchemaVersion(module.feature).read(step);
    if (stored > from && stored <= module.expectedVersion)
        return true;
    if (stored != from)
        throw ExecutionException("the schema version was changed by another program");
    Backup backup(step, module);
    try {
        work(step, backup);
    } catch (...) {
        // An attempt that fails every time must not fill the disk.
        if (transaction.wasLost() || transaction.rollback())
            backup.withdraw();
        throw;
    }
    if (!transaction.commit())
        throw ExecutionException(("the transaction cannot be committed: " + reason(transaction)).constData(),
                                 transaction.isUnavailable());
    return true;
}

bool hasSequence(IDatabase& db, const QString& table)
{
    const QString select = Database::Backend::of(db).sequenceSearch();
    return !select.isEmpty() && !StatementRunner(db).rows(select.arg(table)).isEmpty();
}

/// The sequence of a table that was dropped stays, and serves the table that takes its place.
bool createSequence(IDatabase& db, const QString& table)
{
    if (hasSequence(db, table))
        return true;
    return db.CreateSequence(table);
}

} // namespace

AbstractMigrationManager::AbstractMigrationManager(QObject* parent)
    : QObject(parent)
{}

AbstractMigrationManager::~AbstractMigrationManager() = default;

void AbstractMigrationManager::setDbWorker(DbWorker* worker)
{
    m_worker = worker;
}

quint32 AbstractMigrationManager::DbVersion() const
{
    return run<quint32>(m_worker, module(), Q_FUNC_INFO, invalidVersion, [this](IDatabase& db) {
        requireConnection(db);
        StatementRunner statements(db);
        const quint32 version = SchemaVersion(module().feature).read(statements);
        if (version == invalidVersion)
            throw ExecutionException("the stored number is no version");
        return version;
    });
}

quint32 AbstractMigrationManager::InvalidVersion() const
{
    return invalidVersion;
}

quint32 AbstractMigrationManager::ExpectedVersion() const
{
    return module().expectedVersion;
}

bool AbstractMigrationManager::WaitForConnected()
{
    return WaitForConnected(m_worker);
}

bool AbstractMigrationManager::WaitForConnected(DbWorker* worker)
{
    return run<bool>(worker, module(), Q_FUNC_INFO, false, [this, function = Q_FUNC_INFO](IDatabase& db) {
        bool connected = false;
        try {
            connected = connectPatiently(db);
        } catch (const Exceptions::DbException& error) {
            qCWarning(module().category).noquote() << function << QString::fromLocal8Bit(error.what());
        }
        if (!connected)
            FailureWatch::report({db.OpenError(), Failure::Kind::Unavailable, {}, {}});
        return connected;
    });
}

quint32 AbstractMigrationManager::MigrationSteps() const
{
    const quint32 version = DbVersion();
    return version <= ExpectedVersion() ? ExpectedVersion() - version : 0;
}

QString AbstractMigrationManager::feature()
{
    return module().feature;
}

QStringList AbstractMigrationManager::migrationMessages()
{
    return m_messages;
}

bool AbstractMigrationManager::setDbVersion(unsigned int version)
{
    return run<bool>(m_worker, module(), Q_FUNC_INFO, false, [this, version](IDatabase& db) {
        return inTransaction(db, module(), m_from, [&](MigrationStep& step, Backup&) {
            SchemaVersion(module().feature).write(step, version);
        });
    });
}

bool AbstractMigrationManager::Migrate()
{
    const quint32 from = DbVersion();
    const quint32 expected = ExpectedVersion();
    if (from == expected)
        return true;
    qCDebug(module().category).noquote() << module().logPrefix + QStringLiteral("Migrate FROM:") << from << "TO"
                                         << expected;
    if (from == invalidVersion)
        return false; // Told when it was read.
    if (from > expected) {
        module().tellFailure(Q_FUNC_INFO, ExecutionException("the database is newer than this build"));
        return false;
    }
    m_isPrepared = false;
    const QVector<Step> all = steps();
    for (m_from = from; m_from < expected; ++m_from) {
        if (!all.at(static_cast<int>(m_from))() || !setDbVersion(m_from + 1))
            return false;
        Q_EMIT stepCompleted(m_from + 1);
    }
    return true;
}

bool AbstractMigrationManager::runStep(const char* function, const std::function<void(MigrationStep&)>& changes)
{
    return run<bool>(m_worker, module(), function, false, [&](IDatabase& db) {
        return inTransaction(db, module(), m_from, [&](MigrationStep& step, Backup& backup) {
            if (!m_isPrepared) {
                requireCredible(step, m_from);
                backup.make();
                m_isPrepared = true;
            }
            changes(step);
            step.restoreAttachments();
        });
    });
}

void AbstractMigrationManager::requireCredible(MigrationStep& /*step*/, quint32 /*version*/)
{
    // No step that discards nothing can do harm.
}

unsigned int AbstractMigrationManager::createTable(IDatabase& db, const QStringList& existingTables,
                                                   QStringList& statementParts, const QString& tableName)
{
    if (existingTables.contains(tableName))
        return 0;
    try {
        db.Exec(statementParts.join(QLatin1Char(' ')));
        return createSequence(db, tableName) ? 0 : 1;
    } catch (const std::exception& error) {
        module().tellFailure(Q_FUNC_INFO, error);
        return 1;
    }
}

void AbstractMigrationManager::createTable(MigrationStep& step, const TableDefinition& table)
{
    const QStringList existing = step.tables();
    if (existing.contains(table.name))
        return;
    QStringList parts = step.statementParts(table);
    step.require(createTable(step.database(), existing, parts, table.name));
}

void AbstractMigrationManager::createVersionTables(MigrationStep& step)
{
    for (const TableDefinition& table : SchemaVersion::tables())
        createTable(step, table);
    // Settings tables from elsewhere may have rows and no sequence for new ones.
    const QString features = QStringLiteral("features");
    if (step.isPostgres() && !hasSequence(step.database(), features)) {
        step.require(step.database().CreateSequence(features) ? 0 : 1);
        step.execute(QStringLiteral("SELECT setval('features_s', max(id)) FROM features"));
    }
}

} // namespace DataAccess::Manager
