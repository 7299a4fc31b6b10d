#include "OpenDatabase.h"

#include "database/DatabaseConfig.h"
#include "database/Task.h"
#include "migration/editor/EditorMigrationManager.h"
#include "migration/pd/PdMigrationManager.h"

#include <QUuid>

#include <cstdio>
#include <stdexcept>

using namespace DataAccess;

namespace {

std::shared_ptr<Interfaces::IConfig> configFor(const QString& path)
{
    auto config = std::make_shared<Database::DatabaseConfig>();
    config->SetConnectionName(QUuid::createUuid().toString());
    config->SetDatabaseName(path);
    config->SetType(Enumerations::SQLite3);
    return config;
}

[[noreturn]] void fail(const QString& reason)
{
    throw std::runtime_error(reason.toLocal8Bit().constData());
}

void bringUpToDate(Interfaces::IMigrationManager& migration)
{
    const quint32 version = migration.DbVersion();
    if (version == migration.InvalidVersion())
        fail(QStringLiteral("the schema version cannot be read"));
    if (version > migration.ExpectedVersion())
        fail(QStringLiteral("its schema version %1 is newer than this program's %2 (%3)")
                 .arg(version)
                 .arg(migration.ExpectedVersion())
                 .arg(migration.feature()));
    if (!migration.Migrate())
        fail(QStringLiteral("its schema cannot be brought up to date; is the file writable, and the disk not full?"));
    const QStringList messages = migration.migrationMessages();
    for (const QString& message : messages)
        std::printf("%s\n", qUtf8Printable(message));
}

} // namespace

OpenDatabase::OpenDatabase(const QString& path)
    : m_worker(Database::DbWorker::make_worker(&m_thread, configFor(path)))
{
    m_thread.start();
    try {
        migrate();
    } catch (...) {
        stop();
        throw;
    }
}

OpenDatabase::~OpenDatabase()
{
    stop();
}

void OpenDatabase::stop()
{
    m_thread.quit();
    m_thread.wait();
    m_worker.reset();
}

void OpenDatabase::migrate()
{
    Manager::EditorMigrationManager network;
    network.setDbWorker(m_worker.get());
    if (!network.WaitForConnected())
        fail(openError());
    m_versionBefore = network.DbVersion();
    bringUpToDate(network);
    m_version = network.DbVersion();
    Manager::PdMigrationManager measurements;
    measurements.setDbWorker(m_worker.get());
    bringUpToDate(measurements);
}

QString OpenDatabase::openError() const
{
    Database::Task<QString> task([](Interfaces::IDatabase& db) { return db.OpenError(); });
    m_worker->insert(task.toJob());
    return task.Result();
}
