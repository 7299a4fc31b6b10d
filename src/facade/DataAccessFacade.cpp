#include "facade/DataAccessFacade.h"

#include "context/CableContext.h"
#include "context/PdContext.h"
#include "database/Failure.h"
#include "database/IConfig.h"
#include "database/LoggingCategories.h"
#include "database/Task.h"
#include "database/backends/Backend.h"
#include "facade/private/RunningDatabase.h"
#include "factories/EditorRepositoryManagerFactory.h"
#include "factories/LbRepositoryManagerFactory.h"
#include "factories/PdRepositoryManagerFactory.h"
#include "manager/RepositoryManager.h"
#include "migration/editor/EditorMigrationManager.h"
#include "migration/pd/PdMigrationManager.h"
#include "migration/private/IdSpelling.h"

#include <QCoreApplication>

#include <cstdlib>
#include <exception>
#include <iterator>
#include <map>
#include <mutex>
#include <set>
#include <shared_mutex>
#include <tuple>
#include <vector>

namespace DataAccess {

namespace Interfaces {

IDataAccessFacade::~IDataAccessFacade() = default;

QString IDataAccessFacade::LastError(std::shared_ptr<IConfig>) const
{
    return {};
}

} // namespace Interfaces

namespace {

/// Gives a migration manager a worker for as long as it lives.
class WorkerScope
{
public:
    WorkerScope(Interfaces::IMigrationManager& manager, Database::DbWorker* worker)
        : m_manager(manager)
    {
        m_manager.setDbWorker(worker);
    }
    ~WorkerScope() { m_manager.setDbWorker(nullptr); }
    WorkerScope(const WorkerScope&) = delete;
    WorkerScope& operator=(const WorkerScope&) = delete;

private:
    Interfaces::IMigrationManager& m_manager;
};

/// Brings the ids to one spelling; false when that failed, which is logged and reported.
bool unifyIds(Database::DbWorker& worker)
{
    Database::Task<bool> task([](Interfaces::IDatabase& db) { return Manager::IdSpelling(db).unify(); });
    worker.insert(task.toJob());
    try {
        return task.Result();
    } catch (const std::exception& error) {
        const QString reason = QString::fromLocal8Bit(error.what());
        qCWarning(lcFacade).noquote() << "The ids are not looked at:" << reason;
        Database::FailureWatch::report({reason, Database::Failure::Kind::Unavailable, {}, {}});
        return false;
    }
}

} // namespace

/// How far the opening of one database has come.
struct DataAccessFacade::Opening
{
    const Interfaces::IConfig& config;
    /// The schemas that are newer than this build.
    QStringList newerFeatures = {};
    /// The first failure; empty while there is none.
    QString error = {};
    /// The connection was refused.
    bool isOutOfReach = false;
    /// Another program kept a schema from being changed, for longer than there is waiting.
    bool isLocked = false;

    /// Says that @p what failed, for the reason that @p watch was told.
    void fail(const QString& what, const Database::FailureWatch& watch)
    {
        if (!error.isEmpty())
            return;
        QString reason = watch.reason().simplified();
        if (!config.IsValid())
            reason = QStringLiteral("the configuration does not name a database completely");
        else if (reason.isEmpty())
            reason = QStringLiteral("the log says why");
        error = what + QStringLiteral(": ") + reason;
    }
};

struct DataAccessFacade::Data
{
    std::shared_ptr<Interfaces::IMigrationManager> editorMigration =
        std::make_shared<Manager::EditorMigrationManager>();
    std::shared_ptr<Interfaces::IMigrationManager> pdMigration = std::make_shared<Manager::PdMigrationManager>();
    const std::vector<std::shared_ptr<Interfaces::IMigrationManager>> migrations = {editorMigration, pdMigration};
    Factories::EditorRepositoryManagerFactory editorFactory;
    Factories::PdRepositoryManagerFactory pdFactory;
    Factories::LbRepositoryManagerFactory lbFactory;

    /// Held while a database is opened, and by who uses the migration managers. Recursive, since a receiver of the
    /// signals may ask for something.
    std::recursive_mutex opening;
    /// Guards the table. Not held while a job is waited for, which may itself ask for something.
    std::mutex mutex;
    /// Keyed by identity. Keeps the configurations alive: another one at the same address would be taken for this one.
    std::map<std::shared_ptr<Interfaces::IConfig>, std::unique_ptr<RunningDatabase>> databases;
    /// Why a database is not open. Does not keep the configurations alive: they may never be used again.
    std::map<std::weak_ptr<Interfaces::IConfig>, QString, std::owner_less<>> errors;
    /// Held, shared, by threads that are removing databases, which the table no longer knows.
    std::shared_mutex removals;
    /// Backend, host and port of what is closed when the process exits.
    std::set<std::tuple<const Database::Backend*, QString, unsigned int>> closedAtExit;
};

std::shared_ptr<DataAccessFacade> DataAccessFacade::Instance()
{
    // Never destroyed: the end of the process comes back here, and may come from the thread of a database.
    static const auto* const instance = new std::shared_ptr<DataAccessFacade>(new DataAccessFacade(nullptr));
    return *instance;
}

DataAccessFacade::DataAccessFacade(QObject* parent)
    : QObject(parent)
    , m_data(std::make_unique<Data>())
{}

DataAccessFacade::~DataAccessFacade() = default;

std::shared_ptr<Interfaces::IRepositoryManager>
DataAccessFacade::AddDatabase(std::shared_ptr<Interfaces::IConfig> config)
{
    if (RunningDatabase::isDatabaseThread()) {
        const QString reason = QStringLiteral("No database can be opened on the thread of one");
        qCCritical(lcFacade).noquote() << reason;
        return refuse(config, reason);
    }
    const std::lock_guard<std::recursive_mutex> lockOpening(m_data->opening);
    refuse(config, {});
    if (auto repositories = GetRepositories(config))
        return repositories;

    auto database = std::make_unique<RunningDatabase>(config);
    Opening opening{*config};
    checkSchemas(*database, opening);
    if (!opening.error.isEmpty()) {
        database.reset();
        // Worded so from the first, and kept so that a search of old and new logs finds it.
        qCWarning(lcFacade) << "QOR did not initialized";
        return refuse(config, opening.error);
    }
    database->repositories = makeRepositories(*database, *config, opening.newerFeatures);
    closeAllAtEnd(*config);
    const std::lock_guard<std::mutex> lock(m_data->mutex);
    // Unless a receiver of a signal has opened it meanwhile.
    const auto entry = m_data->databases.emplace(std::move(config), std::move(database)).first;
    return entry->second->repositories;
}

std::shared_ptr<Interfaces::IRepositoryManager>
DataAccessFacade::refuse(const std::shared_ptr<Interfaces::IConfig>& config, const QString& reason)
{
    const std::lock_guard<std::mutex> lock(m_data->mutex);
    auto& errors = m_data->errors;
    for (auto error = errors.begin(); error != errors.end();)
        error = error->first.expired() || error->first.lock() == config ? errors.erase(error) : std::next(error);
    if (!reason.isEmpty())
        errors.emplace(config, reason);
    return nullptr;
}

QString DataAccessFacade::LastError(std::shared_ptr<Interfaces::IConfig> config) const
{
    const std::lock_guard<std::mutex> lock(m_data->mutex);
    const auto error = m_data->errors.find(config);
    return error == m_data->errors.end() ? QString() : error->second;
}

void DataAccessFacade::checkSchemas(RunningDatabase& database, Opening& opening)
{
    for (const auto& migration : m_data->migrations) {
        const WorkerScope scope(*migration, database.worker());
        checkSchema(*migration, opening);
    }
    // A newer build may spell ids in ways of its own.
    if (!opening.error.isEmpty() || !opening.newerFeatures.isEmpty())
        return;
    const Database::FailureWatch watch;
    // A database that can be read but not written is opened all the same, with its ids as they are.
    if (!unifyIds(*database.worker()) && watch.isUnavailable())
        opening.fail(QStringLiteral("The ids cannot be brought to one spelling"), watch);
}

void DataAccessFacade::checkSchema(Interfaces::IMigrationManager& migration, Opening& opening)
{
    const Database::FailureWatch watch;
    // A database that refused a moment ago, after all attempts, would only take as long to refuse again.
    if (!opening.isOutOfReach && !migration.WaitForConnected()) {
        opening.isOutOfReach = true;
        opening.fail(QStringLiteral("The database cannot be opened"), watch);
    }
    const quint32 version = opening.isOutOfReach ? migration.InvalidVersion() : migration.DbVersion();
    if (version == migration.InvalidVersion()) {
        opening.fail(QStringLiteral("The schema version %1 cannot be read").arg(migration.feature()), watch);
        Q_EMIT unknownDB(QStringLiteral("Error reading database: cannot determine database version."));
    } else if (version > migration.ExpectedVersion()) {
        opening.newerFeatures.append(migration.feature());
        Q_EMIT migrationError(QStringLiteral("Database newer than this: ") + migration.feature());
    } else if (opening.isLocked || !migration.Migrate()) {
        opening.isLocked = watch.isUnavailable();
        opening.fail(QStringLiteral("The schema %1 cannot be brought up to date").arg(migration.feature()), watch);
    }
}

std::shared_ptr<Interfaces::IRepositoryManager> DataAccessFacade::makeRepositories(RunningDatabase& database,
                                                                                   Interfaces::IConfig& config,
                                                                                   const QStringList& newerFeatures)
{
    const Enumerations::LoadingStrategies strategy = config.LoadingStrategy();
    const auto editor = m_data->editorFactory.create(database.worker(), strategy);
    const auto pd = m_data->pdFactory.create(database.worker(), strategy);
    const auto lb = m_data->lbFactory.create(database.worker(), strategy);
    editor->SetSchemaIsNewer(newerFeatures.contains(m_data->editorMigration->feature()));
    pd->SetSchemaIsNewer(newerFeatures.contains(m_data->pdMigration->feature()));

    const auto cableContext = std::make_shared<Context::CableContext>(strategy, editor, 0U, nullptr);
    editor->SetContext(cableContext);
    const auto pdContext = std::make_shared<Context::PdContext>(strategy, pd, 0U, nullptr);
    pd->SetContext(pdContext);
    pdContext->SetCableContext(cableContext);
    return std::make_shared<Manager::RepositoryManager>(editor, pd, lb, cableContext, pdContext, database.worker());
}

std::shared_ptr<Interfaces::IRepositoryManager>
DataAccessFacade::GetRepositories(std::shared_ptr<Interfaces::IConfig> config)
{
    const std::lock_guard<std::mutex> lock(m_data->mutex);
    const auto open = m_data->databases.find(config);
    return open == m_data->databases.end() ? nullptr : open->second->repositories;
}

void DataAccessFacade::RemoveDatabase(std::shared_ptr<Interfaces::IConfig> config)
{
    if (RunningDatabase::isDatabaseThread()) {
        qCCritical(lcFacade) << "No database can be removed on the thread of one";
        return;
    }
    const std::shared_lock<std::shared_mutex> removal(m_data->removals);
    std::unique_ptr<RunningDatabase> database;
    {
        const std::lock_guard<std::mutex> lock(m_data->mutex);
        const auto open = m_data->databases.find(config);
        if (open == m_data->databases.end())
            return;
        database = std::move(open->second);
        m_data->databases.erase(open);
    }
    database->finish();
}

QHash<QString, QString> DataAccessFacade::GetVersions()
{
    QHash<QString, QString> versions;
    for (const auto& migration : m_data->migrations)
        versions.insert(migration->feature(), QStringLiteral("1.3.%1").arg(migration->ExpectedVersion()));
    return versions;
}

QStringList DataAccessFacade::GetMigrationMessages()
{
    const std::lock_guard<std::recursive_mutex> opening(m_data->opening);
    QStringList messages;
    for (const auto& migration : m_data->migrations)
        messages += migration->migrationMessages();
    return messages;
}

void DataAccessFacade::closeAll()
{
    // The process exits from within a job, which cannot be waited for.
    if (RunningDatabase::isDatabaseThread())
        return;
    const std::lock_guard<std::recursive_mutex> opening(m_data->opening);
    std::vector<std::shared_ptr<Interfaces::IConfig>> configs;
    {
        const std::lock_guard<std::mutex> lock(m_data->mutex);
        for (const auto& open : m_data->databases)
            configs.push_back(open.first);
    }
    for (const auto& config : configs)
        RemoveDatabase(config);
}

void DataAccessFacade::closeAllAtEnd(Interfaces::IConfig& config)
{
    // No job can run any more once the application object has ended, which calls each routine once, and forgets it.
    const auto closeWithApplication = [] {
        Instance()->closeAll();
        // Other threads may be closing some, and have to finish before the application ends.
        const std::unique_lock<std::shared_mutex> removals(Instance()->m_data->removals);
    };
    qRemovePostRoutine(closeWithApplication);
    qAddPostRoutine(closeWithApplication);
    // An exit without that end destroys what a driver needs to close a connection, the latest made first. The driver
    // made it when the first database of a server was opened, so that what is registered now is called before.
    if (m_data->closedAtExit.emplace(&Database::Backend::of(config.Type()), config.HostName(), config.Port()).second)
        std::atexit([] { Instance()->closeAll(); });
}

} // namespace DataAccess
