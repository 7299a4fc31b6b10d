// A program outside the project that opens a database on the server that the environment names, and counts its default
// insulations.

#include "context/CableContext.h"
#include "database/DatabaseConfig.h"
#include "facade/DataAccessFacade.h"
#include "manager/IRepositoryManager.h"

#include <QCoreApplication>
#include <QDebug>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);

    auto config = std::make_shared<DataAccess::Database::DatabaseConfig>();
    config->SetConnectionName(QStringLiteral("{5b7c1b0e-3f0e-4c5d-9a55-1f2e3d4c5b6a}"));
    config->SetDatabaseName(QStringLiteral("postgres"));
    config->SetHostName(qEnvironmentVariable("DATAACCESS_TEST_PG_HOST"));
    config->SetPort(qEnvironmentVariable("DATAACCESS_TEST_PG_PORT").toUInt());
    config->SetUserName(qEnvironmentVariable("DATAACCESS_TEST_PG_USER"));
    config->SetPassword(qEnvironmentVariable("DATAACCESS_TEST_PG_PASSWORD"));
    config->SetType(DataAccess::Enumerations::Postgres);

    const auto facade = DataAccess::DataAccessFacade::Instance();
    const auto database = facade->AddDatabase(config);
    if (!database) {
        qCritical() << facade->LastError(config);
        return 1;
    }
    const auto network = database->CableContext();
    network->reload();
    qInfo() << network->Insulations().size() << "insulations";
    facade->RemoveDatabase(config);
    return 0;
}
