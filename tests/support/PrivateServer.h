#pragma once

#include "database/DatabaseConfig.h"

#include <QTemporaryDir>

namespace TestSupport {

/// A PostgreSQL server of a test's own, which the test may break off. It runs while the object lives.
class PrivateServer
{
public:
    PrivateServer();
    ~PrivateServer();
    PrivateServer(const PrivateServer&) = delete;
    PrivateServer& operator=(const PrivateServer&) = delete;

    /// Breaks the server off, as a crash would, and starts it again.
    void restart() { run("restart"); }
    /// A new configuration of the server's own database.
    std::shared_ptr<DataAccess::Database::DatabaseConfig> config() const;

private:
    /// Runs an operation of the server script; ends the tests when that fails.
    void run(const char* operation) const;

    QTemporaryDir m_folder;
};

} // namespace TestSupport
