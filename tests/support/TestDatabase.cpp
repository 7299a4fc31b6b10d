#include "support/TestDatabase.h"

#include "database/Database.h"

#include <QTest>
#include <QUuid>

using namespace DataAccess;

namespace TestSupport {

namespace {

QString environment(const char* name)
{
    if (!qEnvironmentVariableIsSet(name))
        qFatal("%s is not set: run the tests through scripts/test or scripts/with-postgres", name);
    return qEnvironmentVariable(name);
}

void runOnServer(const QString& statement)
{
    Database::Database server(serverConfig(QStringLiteral("postgres")));
    server.Exec(statement);
}

} // namespace

void addBackends()
{
    QTest::addColumn<int>("backend");
    QTest::newRow("SQLite") << static_cast<int>(Enumerations::SQLite3);
    QTest::newRow("PostgreSQL") << static_cast<int>(Enumerations::Postgres);
}

Enumerations::DatabaseType currentBackend()
{
    QFETCH(int, backend);
    return static_cast<Enumerations::DatabaseType>(backend);
}

std::shared_ptr<Database::DatabaseConfig> serverConfig(const QString& databaseName)
{
    auto config = std::make_shared<Database::DatabaseConfig>();
    config->SetConnectionName(QUuid::createUuid().toString());
    config->SetDatabaseName(databaseName);
    config->SetHostName(environment("DATAACCESS_TEST_PG_HOST"));
    config->SetPort(environment("DATAACCESS_TEST_PG_PORT").toUInt());
    config->SetUserName(environment("DATAACCESS_TEST_PG_USER"));
    config->SetPassword(environment("DATAACCESS_TEST_PG_PASSWORD"));
    config->SetType(Enumerations::Postgres);
    return config;
}

TestDatabase::TestDatabase(Enumerations::DatabaseType type)
    : m_type(type)
{
    if (m_type == Enumerations::Postgres) {
        m_name = QStringLiteral("test_") + QUuid::createUuid().toString(QUuid::Id128);
        runOnServer(QStringLiteral("CREATE DATABASE %1").arg(m_name));
    } else {
        m_name = m_folder.filePath(QStringLiteral("test.vbk"));
    }
}

TestDatabase::TestDatabase()
    : TestDatabase(currentBackend())
{}

TestDatabase::~TestDatabase()
{
    if (m_type == Enumerations::Postgres)
        runOnServer(QStringLiteral("DROP DATABASE %1 WITH (FORCE)").arg(m_name));
}

std::shared_ptr<Database::DatabaseConfig> TestDatabase::config(const QString& connectionName) const
{
    std::shared_ptr<Database::DatabaseConfig> config;
    if (m_type == Enumerations::Postgres) {
        config = serverConfig(m_name);
    } else {
        config = std::make_shared<Database::DatabaseConfig>();
        config->SetDatabaseName(m_name);
        config->SetType(m_type);
        config->SetConnectionName(QUuid::createUuid().toString());
    }
    if (!connectionName.isEmpty())
        config->SetConnectionName(connectionName);
    return config;
}

} // namespace TestSupport
