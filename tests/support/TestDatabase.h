#pragma once

#include "database/DatabaseConfig.h"

#include <QTemporaryDir>

#include <memory>

namespace TestSupport {

/// Adds the column "backend" and one row a backend to the data table of a test.
void addBackends();
/// The backend in the current row of the test's data table.
DataAccess::Enumerations::DatabaseType currentBackend();

/// The server that the test command started. Fails the process with a clear message when there is none.
std::shared_ptr<DataAccess::Database::DatabaseConfig> serverConfig(const QString& databaseName);

/// An empty database of one backend, of its own for each object, and gone with it.
class TestDatabase
{
public:
    explicit TestDatabase(DataAccess::Enumerations::DatabaseType type);
    /// Of the backend in the current row of the test's data table.
    TestDatabase();
    ~TestDatabase();
    TestDatabase(const TestDatabase&) = delete;
    TestDatabase& operator=(const TestDatabase&) = delete;

    DataAccess::Enumerations::DatabaseType type() const { return m_type; }
    /// The path of the file, or the name on the server.
    const QString& name() const { return m_name; }
    /// A new configuration of the database, under a connection name that is @p connectionName or new.
    std::shared_ptr<DataAccess::Database::DatabaseConfig> config(const QString& connectionName = QString()) const;

private:
    DataAccess::Enumerations::DatabaseType m_type;
    QTemporaryDir m_folder;
    QString m_name;
};

} // namespace TestSupport
