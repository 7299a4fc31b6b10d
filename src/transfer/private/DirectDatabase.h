#pragma once

#include "database/DataAccessExport.h"
#include "database/DatabaseType.h"

#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>
#include <memory>

namespace DataAccess::Interfaces {
class IConfig;
class IDatabase;
} // namespace DataAccess::Interfaces

namespace DataAccess::Transfer {

/// How a database is reached.
struct ConnectionSettings
{
    Enumerations::DatabaseType type = Enumerations::None; ///< The backend.
    /// The path of the file, or the name of the database on its server.
    QString name;
    /// What libpq is told beside the name, keyword by keyword; empty except for PostgreSQL, and without a password.
    QVector<QPair<QString, QString>> server;
    QString password;        ///< Plain text; of no meaning to files.
    bool isReadOnly = false; ///< Whether the database refuses to be written.
};

/// The version that a database has of one schema, and the one that this build works with.
struct SchemaState
{
    QString feature;      ///< The schema, by the name of the settings row that holds its version.
    quint32 found = 0;    ///< The version of the database; 0 without one.
    quint32 expected = 0; ///< The version that this build works with.
};

/// What libpq is told to reach the database, in its own form, with its name and without a password. Of a keyword that
/// stands there twice the last value counts.
DATAACCESS_EXPORT QString connectionText(const ConnectionSettings& settings);

/**
 * A database that is opened as it is: nothing is migrated, and with a read-only connection nothing can be written. Its
 * connection is used on the thread that made the object.
 */
class DATAACCESS_EXPORT DirectDatabase
{
public:
    /// Throws NotOpenException with the reason when the database cannot be opened.
    explicit DirectDatabase(const ConnectionSettings& settings);
    ~DirectDatabase();
    DirectDatabase(const DirectDatabase&) = delete;
    DirectDatabase& operator=(const DirectDatabase&) = delete;

    /// What the database was opened with.
    const ConnectionSettings& settings() const { return m_settings; }
    /// The connection, owned by this object.
    Interfaces::IDatabase& database() const { return *m_database; }
    /// The schemas, the one of the cable network first. Throws ExecutionException when they cannot be read.
    QVector<SchemaState> schemas() const;
    /**
     * Runs the steps that the schemas lack, without a backup; @p done is told the name of the schema and the version
     * that a step has reached. False when one failed: the log says why, and the next call begins with it.
     */
    bool migrate(const std::function<void(const QString& feature, quint32 version)>& done = {});
    /// What the user should be told about the steps that have run.
    QStringList migrationMessages() const { return m_messages; }

private:
    void connect();

    ConnectionSettings m_settings;
    std::shared_ptr<Interfaces::IConfig> m_config;
    std::unique_ptr<Interfaces::IDatabase> m_database;
    QStringList m_messages;
};

} // namespace DataAccess::Transfer
