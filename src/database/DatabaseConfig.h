#pragma once

#include "database/IConfig.h"

#include <memory>
#include <vector>

class QSettings;
class QUuid;

namespace DataAccess::Database {

/**
 * The configuration of one database, and the store that keeps configurations in the user's settings file.
 *
 * The static operations are meant for the main thread. They never throw: a settings file that cannot be written, or is
 * no regular file, is logged (category "qor.database.config") and left alone. One that is a link is read, and replaced
 * by a file of its own when something is written. A configuration is not synchronised; a database only reads it.
 */
class DATAACCESS_EXPORT DatabaseConfig : public Interfaces::IConfig
{
public:
    /// Names no database, and is not valid.
    DatabaseConfig();
    ~DatabaseConfig() override;
    DatabaseConfig(const DatabaseConfig&) = delete;
    DatabaseConfig& operator=(const DatabaseConfig&) = delete;

    const QString& ConnectionName() const override;
    const QString& DatabaseName() const override;
    Enumerations::DatabaseType Type() override;
    const QString& HostName() const override;
    const QString& UserName() const override;
    const QString& Password() const override;
    unsigned int Port() const override;
    bool IsValid() const override;
    Enumerations::LoadingStrategies LoadingStrategy() override;
    bool BackupBeforeMigration() const override;

    /// Changes one value, and evaluates validity anew.
    void SetConnectionName(const QString& connectionName);
    void SetDatabaseName(const QString& databaseName);
    void SetHostName(const QString& hostName);
    void SetUserName(const QString& userName);
    void SetPassword(const QString& password);
    void SetPort(unsigned int port);
    void SetType(Enumerations::DatabaseType type);

    /// Leaves validity alone.
    void SetLoadingStrategy(Enumerations::LoadingStrategies strategy);
    /// Kept in this object only, not in the settings file.
    void SetBackupBeforeMigration(bool isWanted);

    /// Writes @p config into the settings file under its connection name. Empty credentials leave stored ones alone.
    static void AddConfig(const std::shared_ptr<Interfaces::IConfig>& config);
    /// Deletes @p config from the settings file; one that is not stored, or has no name, changes
    /// nothing.
    static void RemoveConfig(const std::shared_ptr<Interfaces::IConfig>& config);
    /// Writes @p config and records it as the default.
    static void SetDefaultConfig(const std::shared_ptr<Interfaces::IConfig>& config);
    /// All stored configurations. A group that holds none gives an empty configuration. The misspelt name stays:
    /// applications call it.
    static std::vector<std::shared_ptr<Interfaces::IConfig>> GetConfiguartions();
    /// The recorded default, or a new SQLite 3 configuration of the default file. Not written to the settings file.
    static std::shared_ptr<Interfaces::IConfig> DefaultConfig();

protected:
    /// SQLite needs a connection and a database name, PostgreSQL a host as well; another type changes nothing.
    void validate();

private:
    struct Data;

    template <typename T>
    void set(T& field, const T& value);

    static bool LoadConfig(QSettings& settings, const QUuid& id, DatabaseConfig& config);
    static QString DefaultDatabasePath();

    std::unique_ptr<Data> m_data;
};

} // namespace DataAccess::Database
