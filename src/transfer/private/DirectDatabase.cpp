#include "transfer/private/DirectDatabase.h"

#include "database/Database.h"
#include "database/DatabaseConfig.h"
#include "database/DbException.h"
#include "database/DbWorker.h"
#include "database/StatementRunner.h"
#include "database/backends/Backend.h"
#include "migration/editor/EditorMigrationManager.h"
#include "migration/pd/PdMigrationManager.h"
#include "migration/private/SchemaVersion.h"

#include <QMap>
#include <QSqlDatabase>
#include <QThread>
#include <QUuid>

#include <array>

namespace DataAccess::Transfer {

namespace {

using Managers = std::array<std::unique_ptr<Manager::AbstractMigrationManager>, 2>;

Managers managers()
{
    return {std::make_unique<Manager::EditorMigrationManager>(), std::make_unique<Manager::PdMigrationManager>()};
}

/// The thread and the worker that the migrations need.
class Worker
{
public:
    explicit Worker(const std::shared_ptr<Interfaces::IConfig>& config)
        : m_worker(Database::DbWorker::make_worker(&m_thread, config))
    {
        m_thread.start();
    }
    ~Worker()
    {
        m_thread.quit();
        m_thread.wait();
    }
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    Database::DbWorker* get() const { return m_worker.get(); }

private:
    QThread m_thread;
    std::unique_ptr<Database::DbWorker> m_worker;
};

} // namespace

QString connectionText(const ConnectionSettings& settings)
{
    QMap<QString, QString> options;
    for (const auto& [keyword, value] : settings.server)
        options.insert(keyword, value);
    if (!settings.name.isEmpty())
        options.insert(QStringLiteral("dbname"), settings.name);
    if (!options.contains(QStringLiteral("connect_timeout")))
        options.insert(QStringLiteral("connect_timeout"), QStringLiteral("5"));
    if (settings.isReadOnly)
        options[QStringLiteral("options")] += QStringLiteral(" -c default_transaction_read_only=on");
    QStringList texts;
    for (auto option = options.begin(); option != options.end(); ++option) {
        QString text = option.value();
        text.replace(QLatin1Char('\\'), QLatin1String("\\\\")).replace(QLatin1Char('\''), QLatin1String("\\'"));
        texts.append(QStringLiteral("%1='%2'").arg(option.key(), text));
    }
    return texts.join(QLatin1Char(' '));
}

DirectDatabase::DirectDatabase(const ConnectionSettings& settings)
    : m_settings(settings)
{
    const QString connection = QUuid::createUuid().toString();
    // The library takes a connection that is registered already as it is, with all of its options.
    const Database::Backend& backend = Database::Backend::of(settings.type);
    QSqlDatabase handle = QSqlDatabase::addDatabase(backend.driver(), connection);
    handle.setPassword(settings.password);
    if (backend.isServer()) {
        handle.setConnectOptions(connectionText(settings));
    } else {
        handle.setDatabaseName(settings.name);
        if (settings.isReadOnly)
            handle.setConnectOptions(backend.readOnlyOptions());
    }

    const auto config = std::make_shared<Database::DatabaseConfig>();
    config->SetConnectionName(connection);
    config->SetDatabaseName(settings.name.isEmpty() ? QStringLiteral("default") : settings.name);
    config->SetHostName(QStringLiteral("server"));
    config->SetType(settings.type);
    config->SetBackupBeforeMigration(false);
    m_config = config;
    connect();
}

DirectDatabase::~DirectDatabase() = default;

void DirectDatabase::connect()
{
    const Database::Backend& backend = Database::Backend::of(m_settings.type);
    m_database = std::make_unique<Database::Database>(m_config);
    if (!m_database->Connect()) {
        const QString reason = m_database->OpenError();
        throw Exceptions::NotOpenException(reason.toLocal8Bit().constData(), backend.mayPass(reason));
    }
    if (!backend.bulkSettings().isEmpty())
        m_database->Exec(backend.bulkSettings());
}

QVector<SchemaState> DirectDatabase::schemas() const
{
    QVector<SchemaState> states;
    Database::StatementRunner statements(*m_database);
    for (const auto& manager : managers())
        states.append({manager->feature(), Manager::SchemaVersion(manager->feature()).read(statements),
                       manager->ExpectedVersion()});
    return states;
}

bool DirectDatabase::migrate(const std::function<void(const QString&, quint32)>& done)
{
    m_database.reset(); // The connection moves to the worker's thread and back.
    bool isDone = true;
    {
        const Worker worker(m_config);
        for (const auto& manager : managers()) {
            if (done)
                QObject::connect(manager.get(), &Manager::AbstractMigrationManager::stepCompleted, manager.get(),
                                 [&](quint32 version) { done(manager->feature(), version); });
            manager->setDbWorker(worker.get());
            isDone = isDone && manager->WaitForConnected() && manager->Migrate();
            m_messages += manager->migrationMessages();
        }
    }
    connect();
    return isDone;
}

} // namespace DataAccess::Transfer
