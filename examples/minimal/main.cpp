// The program of README.md: opens network.vbk in the current folder and prints its cables.

#include "context/CableContext.h"
#include "database/DatabaseConfig.h"
#include "facade/DataAccessFacade.h"
#include "manager/IRepositoryManager.h"

#include <QCoreApplication>
#include <QDebug>
#include <QUuid>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);

    auto config = std::make_shared<DataAccess::Database::DatabaseConfig>();
    config->SetConnectionName(QUuid::createUuid().toString());
    config->SetDatabaseName(QStringLiteral("network.vbk"));
    config->SetType(DataAccess::Enumerations::SQLite3);

    const auto facade = DataAccess::DataAccessFacade::Instance();
    const auto database = facade->AddDatabase(config);
    if (!database)
        return 1;
    const auto network = database->CableContext();
    network->reload();
    for (const auto& cable : network->Cables())
        qInfo() << cable->Number() << cable->Length() << "m," << cable->Phases().size() << "phases";
    qInfo() << network->Insulations().size() << "insulations";
    facade->RemoveDatabase(config);
    return 0;
}
