#include "support/PrivateServer.h"

#include <QProcess>
#include <QSettings>
#include <QUuid>

using DataAccess::Database::DatabaseConfig;

namespace TestSupport {

PrivateServer::PrivateServer()
{
    run("start");
}

PrivateServer::~PrivateServer()
{
    run("stop");
}

void PrivateServer::run(const char* operation) const
{
    QProcess script;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("LC_ALL")); // the shell complains about languages that are not installed
    script.setProcessEnvironment(environment);
    script.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    // The server stays; it must not hold on to a pipe that the end of the script is waited for on.
    script.setStandardOutputFile(QProcess::nullDevice());
    script.start(QStringLiteral(DATAACCESS_SOURCE_DIR "/scripts/postgres"),
                 {QLatin1String(operation), m_folder.path()});
    if (!script.waitForFinished(60000) || script.exitStatus() != QProcess::NormalExit || script.exitCode() != 0)
        qFatal("scripts/postgres %s failed", operation);
}

std::shared_ptr<DatabaseConfig> PrivateServer::config() const
{
    const QSettings environment(m_folder.filePath(QStringLiteral("environment")), QSettings::IniFormat);
    const auto variable = [&](const char* name) { return environment.value(QLatin1String(name)).toString(); };
    auto config = std::make_shared<DatabaseConfig>();
    config->SetConnectionName(QUuid::createUuid().toString());
    config->SetDatabaseName(QStringLiteral("postgres"));
    config->SetHostName(variable("DATAACCESS_TEST_PG_HOST"));
    config->SetPort(variable("DATAACCESS_TEST_PG_PORT").toUInt());
    config->SetUserName(variable("DATAACCESS_TEST_PG_USER"));
    config->SetPassword(variable("DATAACCESS_TEST_PG_PASSWORD"));
    config->SetType(DataAccess::Enumerations::Postgres);
    return config;
}

} // namespace TestSupport
