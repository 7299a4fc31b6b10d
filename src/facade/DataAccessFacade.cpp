#include "facade/DataAccessFacade.h"

#include "context/CableContext.h"
#include "context/PdContext.h"
#include "database/IConfig.h"
#include "database/LoggingCategories.h"
#include "facade/RunningDatabase.h"
#include "factories/EditorRepositoryManagerFactory.h"
#include "factories/LbRepositoryManagerFactory.h"
#include "factories/PdRepositoryManagerFactory.h"
#include "manager/RepositoryManager.h"
#include "migration/editor/EditorMigrationManager.h"
#include "migration/pd/PdMigrationManager.h"

#include <QCoreApplication>

#include <cstdlib>
#include <map>
#include <mutex>
#include <set>
#include <vector>

namespace DataAccess {

namespace Interfaces {

IDataAccessFacade::~IDataAccessFacade() = default;

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

} // namespace

struct DataAccessFacade::Data
{
    std::shared_ptr<Interfaces::IMigrationManager> editorMigration =
        std::make_shared<Manager::EditorMigrationManager>();
    std::shared_ptr<Interfaces::IMigrationManager> pdMigration = std::make_shared<Manager::PdMigrationManager>();
    const std::vector<std::shared_ptr<Interfaces::IMigrationManager>> migrations = {editorMigration, pdMigration};
    Factories::EditorRepositoryManagerFactory editorFactory;
    Factories::PdRepositoryManagerFactory pdFactory;
    Factories::LbRepositoryManagerFactory lbFactory;

    /// Recursive, since a receiver of the signals may ask for something.
    std::recursive_mutex mutex;
    std::map<const Interfaces::IConfig*, std::unique_ptr<RunningDatabase>> databases;
    /// Keeps the configurations alive: another object at the same place would be taken for one of them.
    std::map<const Interfaces::IConfig*, std::shared_ptr<Interfaces::IConfig>> configs;
    std::set<int> typesClosedAtExit;
};

std::shared_ptr<DataAccessFacade> DataAccessFacade::Instance()
{
    static const std::shared_ptr<DataAccessFacade> instance(new DataAccessFacade(nullptr));
    return instance;
}

DataAccessFacade::DataAccessFacade(QObject* parent)
    : QObject(parent)
    , m_data(std::make_unique<Data>())
{}

DataAccessFacade::~DataAccessFacade()
{
    closeAll();
}

std::shared_ptr<Interfaces::IRepositoryManager>
DataAccessFacade::AddDatabase(std::shared_ptr<Interfaces::IConfig> config)
{
    const std::lock_guard<std::recursive_mutex> lock(m_data->mutex);
    const auto open = m_data->databases.find(config.get());
    if (open != m_data->databases.end())
        return open->second->repositories;

    auto database = std::make_unique<RunningDatabase>(config);
    if (QCoreApplication::instance() == nullptr) {
        qCCritical(lcFacade) << "No database can be opened without an application object";
        return nullptr;
    }
    QStringList newerFeatures;
    const bool isUpToDate = bringUpToDate(*database, newerFeatures);
    closeAllAtExit(config->Type());
    if (!isUpToDate) {
        database.reset();
        qCWarning(lcFacade) << "QOR did not initialized";
        return nullptr;
    }
    database->repositories = makeRepositories(*database, *config, newerFeatures);
    auto repositories = database->repositories;
    m_data->databases[config.get()] = std::move(database);
    m_data->configs[config.get()] = std::move(config);
    return repositories;
}

bool DataAccessFacade::bringUpToDate(RunningDatabase& database, QStringList& newerFeatures)
{
    bool success = true;
    for (const auto& migration : m_data->migrations) {
        const WorkerScope scope(*migration, database.worker());
        migration->WaitForConnected();
        const quint32 version = migration->DbVersion();
        if (version == migration->InvalidVersion()) {
            success = false;
            Q_EMIT unknownDB(QStringLiteral("Error reading database: cannot determine database version."));
        } else if (version > migration->ExpectedVersion()) {
            newerFeatures.append(migration->feature());
            Q_EMIT migrationError(QStringLiteral("Database newer than this: ") + migration->feature());
        } else if (!migration->Migrate()) {
            success = false;
        }
    }
    return success;
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
    const std::lock_guard<std::recursive_mutex> lock(m_data->mutex);
    const auto open = m_data->databases.find(config.get());
    return open == m_data->databases.end() ? nullptr : open->second->repositories;
}

void DataAccessFacade::RemoveDatabase(std::shared_ptr<Interfaces::IConfig> config)
{
    std::unique_ptr<RunningDatabase> database;
    {
        const std::lock_guard<std::recursive_mutex> lock(m_data->mutex);
        const auto open = m_data->databases.find(config.get());
        if (open == m_data->databases.end())
            return;
        if (open->second->isOwnThread()) {
            qCCritical(lcFacade) << "A database cannot be removed on its own thread";
            return;
        }
        database = std::move(open->second);
        m_data->databases.erase(open);
        m_data->configs.erase(config.get());
    }
    // Others may open and look up databases meanwhile.
    database->finishJobs();
}

QHash<QString, QString> DataAccessFacade::GetVersions()
{
    const std::lock_guard<std::recursive_mutex> lock(m_data->mutex);
    QHash<QString, QString> versions;
    for (const auto& migration : m_data->migrations)
        versions.insert(migration->feature(),
                        QStringLiteral("%1.%2.%3").arg(1).arg(3).arg(migration->ExpectedVersion()));
    return versions;
}

QStringList DataAccessFacade::GetMigrationMessages()
{
    const std::lock_guard<std::recursive_mutex> lock(m_data->mutex);
    QStringList messages;
    for (const auto& migration : m_data->migrations)
        messages += migration->migrationMessages();
    return messages;
}

void DataAccessFacade::closeAll()
{
    std::vector<std::shared_ptr<Interfaces::IConfig>> configs;
    {
        const std::lock_guard<std::recursive_mutex> lock(m_data->mutex);
        for (const auto& config : m_data->configs)
            configs.push_back(config.second);
    }
    for (const auto& config : configs)
        RemoveDatabase(config);
}

void DataAccessFacade::closeAllAtExit(int type)
{
    // No job can run any more once the application object has ended, which calls each routine once, and forgets it.
    const auto close = [] { Instance()->closeAll(); };
    qRemovePostRoutine(close);
    qAddPostRoutine(close);
    // Without one, or with databases opened after it: what a driver needs to close a connection is torn down at the
    // exit of the process, the latest made first. It was made when the first database of a type was opened, and whoever
    // is called before that can still close one.
    if (m_data->typesClosedAtExit.insert(type).second)
        std::atexit(close);
}

} // namespace DataAccess
