#include "migration/AbstractMigrationManager.h"

#include "database/DbException.h"
#include "database/DbWorker.h"
#include "database/Failure.h"
#include "database/IDatabase.h"
#include "database/Task.h"
#include "database/backends/Backend.h"
#include "database/backends/SchemaDialect.h"
#include "migration/MigrationModule.h"
#include "migration/SchemaChange.h"
#include "migration/private/Backup.h"
#include "migration/private/SchemaVersion.h"

#include <QElapsedTimer>
#include <QThread>

#include <exception>
#include <limits>
#include <utility>

namespace DataAccess {

Interfaces::IMigrationManager::~IMigrationManager() = default;

namespace Manager {

using Database::DbWorker;
using Database::Failure;
using Database::FailureWatch;
using Exceptions::ExecutionException;
using Exceptions::NotOpenException;
using Interfaces::IDatabase;

namespace {

constexpr quint32 invalidVersion = std::numeric_limits<quint32>::max();

/// Runs @p job on @p worker and waits for its result; @p failed without a worker and when the job throws, which the log
/// has under the name @p function.
template <typename Result>
Result run(DbWorker* worker, const MigrationModule& module, const QString& function, Result failed,
           const std::function<Result(IDatabase&)>& job)
{
    try {
        if (worker == nullptr)
            throw NotOpenException("there is no database");
        Database::Task<Result> task([&](IDatabase& db) {
            // Told here, the failure comes after what the job itself has told.
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

/**
 * Runs @p work on the database at version @p from, in a transaction of its own. Two programs that open one database at
 * the same time take turns: what the other has done meanwhile is not done again, as an early step on the tables of a
 * late one would discard rows.
 */
bool inTransaction(IDatabase& db, const MigrationModule& module, quint32 from, QStringList& messages,
                   const std::function<void(SchemaChange&, Backup&)>& work)
{
    requireConnection(db);
    Database::Transaction transaction = db.WriteTransaction();
    if (!transaction.isOpen())
        throw NotOpenException(("the transaction cannot be started: " + reason(transaction)).constData(),
                               transaction.isUnavailable());
    SchemaChange schema(db, module, from, messages);
    schema.dialect().lockOthersOut(schema);
    const quint32 stored = SchemaVersion(module.feature).read(schema);
    if (stored > from && stored <= module.expectedVersion())
        return true;
    if (stored != from)
        throw ExecutionException("the schema version was changed by another program");
    Backup backup(schema, module);
    try {
        work(schema, backup);
    } catch (...) {
        // Else an attempt that fails every time would fill the disk with copies.
        if (transaction.wasLost() || transaction.rollback())
            backup.withdraw();
        throw;
    }
    if (!transaction.commit())
        throw ExecutionException(("the transaction cannot be committed: " + reason(transaction)).constData(),
                                 transaction.isUnavailable());
    return true;
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
    return run<quint32>(m_worker, module(), QString::fromLatin1(Q_FUNC_INFO), invalidVersion, [this](IDatabase& db) {
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
    return module().expectedVersion();
}

bool AbstractMigrationManager::WaitForConnected()
{
    return WaitForConnected(m_worker);
}

bool AbstractMigrationManager::WaitForConnected(DbWorker* worker)
{
    return run<bool>(worker, module(), QString::fromLatin1(Q_FUNC_INFO), false,
                     [this, function = Q_FUNC_INFO](IDatabase& db) {
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
    return run<bool>(m_worker, module(), QString::fromLatin1(Q_FUNC_INFO), false, [this, version](IDatabase& db) {
        return inTransaction(db, module(), m_from, m_messages, [&](SchemaChange& schema, Backup&) {
            SchemaVersion(module().feature).write(schema, version);
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
        return false; // The log has the reason since the version was read.
    if (from > expected) {
        module().tellFailure(QString::fromLatin1(Q_FUNC_INFO),
                             ExecutionException("the database is newer than this build"));
        return false;
    }
    m_isPrepared = false;
    for (m_from = from; m_from < expected; ++m_from) {
        const MigrationStep& step = module().steps.at(static_cast<int>(m_from));
        if (!runStep(step) || !setDbVersion(step.version))
            return false;
        Q_EMIT stepCompleted(step.version);
    }
    return true;
}

bool AbstractMigrationManager::runStep(const MigrationStep& step)
{
    return run<bool>(m_worker, module(), module().signature.arg(step.name), false, [&](IDatabase& db) {
        return inTransaction(db, module(), m_from, m_messages, [&](SchemaChange& schema, Backup& backup) {
            if (!m_isPrepared) {
                SchemaVersion::requireCredible(module(), m_from, schema);
                backup.make();
                m_isPrepared = true;
            }
            step.changes(schema);
            schema.restoreAttachments();
        });
    });
}

} // namespace Manager

} // namespace DataAccess
