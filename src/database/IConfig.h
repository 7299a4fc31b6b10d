#pragma once

#include "database/DataAccessExport.h"
#include "database/DatabaseType.h"
#include "database/LoadingStrategies.h"

#include <QString>

namespace DataAccess::Interfaces {

/// Names one database: its backend, its file or server, the credentials, and how much is loaded from it.
class DATAACCESS_EXPORT IConfig
{
public:
    virtual ~IConfig();
    IConfig() = default;
    IConfig(const IConfig&) = default;
    IConfig& operator=(const IConfig&) = default;

    /// Name under which the connection is registered with Qt SQL; of a stored configuration a UUID in braces.
    virtual const QString& ConnectionName() const = 0;
    /// File path (SQLite), or the name of the database on its server.
    virtual const QString& DatabaseName() const = 0;
    /// The backend.
    virtual Enumerations::DatabaseType Type() = 0;
    /// Host of the server; of no meaning to SQLite.
    virtual const QString& HostName() const = 0;
    /// Name of the user on the server; of no meaning to SQLite.
    virtual const QString& UserName() const = 0;
    /// Plain text.
    virtual const QString& Password() const = 0;
    /// Port of the server; 0 is the backend's default.
    virtual unsigned int Port() const = 0;
    /// True when the configuration names a database completely.
    virtual bool IsValid() const = 0;
    /// How much repositories read of what is large.
    virtual Enumerations::LoadingStrategies LoadingStrategy() = 0;

    /// Whether a copy of the stored data is made before the first step of a migration changes it; true by default.
    virtual bool BackupBeforeMigration() const;
};

} // namespace DataAccess::Interfaces
