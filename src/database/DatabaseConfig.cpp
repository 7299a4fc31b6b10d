#include "database/DatabaseConfig.h"

#include "database/LoggingCategories.h"
#include "database/backends/Backend.h"
#include "database/private/Files.h"
#include "database/private/SettingsFile.h"

#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>
#include <QUuid>

namespace DataAccess {

Interfaces::IConfig::~IConfig() = default;

bool Interfaces::IConfig::BackupBeforeMigration() const
{
    return true;
}

namespace Database {

using Enumerations::DatabaseType;
using Interfaces::IConfig;

namespace {

const QString s_group = QStringLiteral("QOR");
const QString s_default = QStringLiteral("Default");
const QString s_type = QStringLiteral("Type");
const QString s_connectionName = QStringLiteral("ConnectionName");
const QString s_databaseName = QStringLiteral("DatabaseName");
// Written and read under two spellings: both are part of the stored format.
const QString s_hostNameWritten = QStringLiteral("Hostname");
const QString s_hostNameRead = QStringLiteral("HostName");
const QString s_userName = QStringLiteral("UserName");
const QString s_password = QStringLiteral("Password");
const QString s_port = QStringLiteral("Port");

bool isUsable(const QString& path)
{
    const QFileInfo file(path);
    return file.exists() && file.isReadable() && file.isWritable();
}

void writeIfSet(QSettings& settings, const QString& key, const QString& value)
{
    if (!value.isEmpty())
        settings.setValue(key, value);
}

/// The settings file, to write @p config there; null when there is nothing to write, or nothing can be written.
std::unique_ptr<SettingsFile> toChange(const std::shared_ptr<IConfig>& config)
{
    auto file = config ? SettingsFile::open() : nullptr;
    return file && file->prepareChange() ? std::move(file) : nullptr;
}

QString text(const QSettings& settings, const QString& key)
{
    return settings.value(key, QString()).toString();
}

} // namespace

struct DatabaseConfig::Data
{
    QString connectionName;
    QString databaseName;
    QString hostName;
    QString userName;
    QString password;
    quint32 port = 0;
    DatabaseType type = Enumerations::None;
    Enumerations::LoadingStrategies loadingStrategy = Enumerations::Complete;
    bool backupBeforeMigration = true;
    bool valid = false;
};

DatabaseConfig::DatabaseConfig()
    : m_data(std::make_unique<Data>())
{}

DatabaseConfig::~DatabaseConfig() = default;

const QString& DatabaseConfig::ConnectionName() const
{
    return m_data->connectionName;
}

const QString& DatabaseConfig::DatabaseName() const
{
    return m_data->databaseName;
}

DatabaseType DatabaseConfig::Type()
{
    return m_data->type;
}

const QString& DatabaseConfig::HostName() const
{
    return m_data->hostName;
}

const QString& DatabaseConfig::UserName() const
{
    return m_data->userName;
}

const QString& DatabaseConfig::Password() const
{
    return m_data->password;
}

unsigned int DatabaseConfig::Port() const
{
    return m_data->port;
}

bool DatabaseConfig::IsValid() const
{
    return m_data->valid;
}

bool DatabaseConfig::BackupBeforeMigration() const
{
    return m_data->backupBeforeMigration;
}

Enumerations::LoadingStrategies DatabaseConfig::LoadingStrategy()
{
    return m_data->loadingStrategy;
}

template <typename T>
void DatabaseConfig::set(T& field, const T& value)
{
    if (field == value)
        return;
    field = value;
    validate();
}

void DatabaseConfig::SetConnectionName(const QString& connectionName)
{
    set(m_data->connectionName, connectionName);
}

void DatabaseConfig::SetDatabaseName(const QString& databaseName)
{
    set(m_data->databaseName, databaseName);
}

void DatabaseConfig::SetHostName(const QString& hostName)
{
    set(m_data->hostName, hostName);
}

void DatabaseConfig::SetUserName(const QString& userName)
{
    set(m_data->userName, userName);
}

void DatabaseConfig::SetPassword(const QString& password)
{
    set(m_data->password, password);
}

void DatabaseConfig::SetPort(unsigned int port)
{
    set(m_data->port, port);
}

void DatabaseConfig::SetType(DatabaseType type)
{
    set(m_data->type, type);
}

void DatabaseConfig::SetBackupBeforeMigration(bool isWanted)
{
    m_data->backupBeforeMigration = isWanted;
}

void DatabaseConfig::SetLoadingStrategy(Enumerations::LoadingStrategies strategy)
{
    m_data->loadingStrategy = strategy;
}

void DatabaseConfig::validate()
{
    const bool named = !m_data->connectionName.isEmpty() && !m_data->databaseName.isEmpty();
    const Backend& backend = Backend::of(m_data->type);
    if (backend.isFile() || backend.isServer())
        m_data->valid = named && (backend.isFile() || !m_data->hostName.isEmpty());
}

void DatabaseConfig::AddConfig(const std::shared_ptr<IConfig>& config)
{
    const auto file = toChange(config);
    if (!file)
        return;
    QSettings& settings = file->settings();
    settings.beginGroup(s_group);
    settings.beginGroup(config->ConnectionName());
    settings.setValue(s_type, static_cast<int>(config->Type()));
    settings.setValue(s_connectionName, config->ConnectionName());
    settings.setValue(s_databaseName, config->DatabaseName());
    writeIfSet(settings, s_hostNameWritten, config->HostName());
    writeIfSet(settings, s_userName, config->UserName());
    writeIfSet(settings, s_password, config->Password());
    if (config->Port() != 0)
        settings.setValue(s_port, config->Port());
    settings.endGroup();
    settings.endGroup();
    file->save();
}

void DatabaseConfig::RemoveConfig(const std::shared_ptr<IConfig>& config)
{
    if (!config)
        return;
    // The store leaves out empty parts of a key: it would remove the group of all configurations.
    if (QString(config->ConnectionName()).remove(QLatin1Char('/')).isEmpty()) {
        qCWarning(lcDatabaseConfig) << "A configuration without a name is not in the settings";
        return;
    }
    const auto file = SettingsFile::open();
    if (!file)
        return;
    QSettings& settings = file->settings();
    if (!settings.contains(QStringLiteral("QOR/%1/ConnectionName").arg(config->ConnectionName())) ||
        !file->prepareChange())
        return;
    settings.beginGroup(s_group);
    settings.remove(config->ConnectionName());
    settings.endGroup();
    file->save();
}

void DatabaseConfig::SetDefaultConfig(const std::shared_ptr<IConfig>& config)
{
    const auto file = toChange(config);
    if (!file)
        return;
    file->settings().beginGroup(s_group);
    file->settings().setValue(s_default, config->ConnectionName());
    file->settings().endGroup();
    file->save();
    AddConfig(config);
}

bool DatabaseConfig::LoadConfig(QSettings& settings, const QUuid& id, DatabaseConfig& config)
{
    if (!settings.contains(id.toString() + QStringLiteral("/ConnectionName"))) {
        qCWarning(lcDatabaseConfig) << "The settings have no configuration" << id;
        return false;
    }
    qCDebug(lcDatabaseConfig) << "Load config" << id;
    settings.beginGroup(id.toString());
    config.SetConnectionName(text(settings, s_connectionName));
    config.SetDatabaseName(text(settings, s_databaseName));
    // A store that compares keys with regard to case knows the host only under the spelling that is written.
    config.SetHostName(text(settings, settings.contains(s_hostNameRead) ? s_hostNameRead : s_hostNameWritten));
    config.SetPassword(text(settings, s_password));
    config.SetPort(settings.value(s_port, 0).toUInt());
    config.SetType(static_cast<DatabaseType>(settings.value(s_type, 0).toInt()));
    config.SetUserName(text(settings, s_userName));
    settings.endGroup();
    return true;
}

std::vector<std::shared_ptr<IConfig>> DatabaseConfig::GetConfiguartions()
{
    std::vector<std::shared_ptr<IConfig>> configurations;
    const auto file = SettingsFile::open();
    if (!file)
        return configurations;
    QSettings& settings = file->settings();
    if (!settings.childGroups().contains(s_group, Qt::CaseSensitive))
        return configurations;
    settings.beginGroup(s_group);
    const QStringList groups = settings.childGroups();
    for (const QString& group : groups) {
        auto config = std::make_shared<DatabaseConfig>();
        LoadConfig(settings, QUuid(group), *config);
        configurations.push_back(std::move(config));
    }
    settings.endGroup();
    return configurations;
}

QString DatabaseConfig::DefaultDatabasePath()
{
    QString oldPath =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Talvik/Talvik.vbk");
    const QString systemFolder = SettingsFile::systemFolder();
    QString newPath = systemFolder.isEmpty() ? QString() : systemFolder + QStringLiteral("/Talvik.vbk");
    if (newPath.isEmpty() || (isUsable(oldPath) && !isUsable(newPath))) {
        qCWarning(lcDatabaseConfig) << "Using old database path:" << oldPath;
        return oldPath;
    }
    return newPath;
}

std::shared_ptr<IConfig> DatabaseConfig::DefaultConfig()
{
    auto config = std::make_shared<DatabaseConfig>();
    config->SetConnectionName(QUuid::createUuid().toString());
    config->SetDatabaseName(DefaultDatabasePath());
    config->SetType(Enumerations::SQLite3);

    if (const auto file = SettingsFile::open()) {
        file->settings().beginGroup(s_group);
        const QString stored = text(file->settings(), s_default);
        if (!stored.isEmpty())
            LoadConfig(file->settings(), QUuid(stored), *config);
        file->settings().endGroup();
    }

    if (Backend::of(config->Type()).isFile()) {
        const QFileInfo database(filePath(config->DatabaseName()));
        if (!database.exists()) {
            qCDebug(lcDatabaseConfig) << "[" << config->ConnectionName()
                                      << "] File not exists:" << config->DatabaseName();
        } else if (!database.isReadable() || !database.isWritable()) {
            qCCritical(lcDatabaseConfig) << "[" << config->ConnectionName()
                                         << "] Insufficient permissions:" << config->DatabaseName()
                                         << "r:" << database.isReadable() << "w:" << database.isWritable();
        }
    }
    return config;
}

} // namespace Database
} // namespace DataAccess
