// The program of docs/using.md: usage FILE OTHER-FILE

#include "context/CableContext.h"
#include "context/PdContext.h"
#include "database/DatabaseConfig.h"
#include "facade/DataAccessFacade.h"
#include "manager/IRepositoryManager.h"

#include <QCoreApplication>
#include <QDebug>
#include <QUuid>

using namespace DataAccess;

namespace {

std::shared_ptr<Interfaces::IConfig> configFor(const QString& path)
{
    auto config = std::make_shared<Database::DatabaseConfig>();
    config->SetConnectionName(QUuid::createUuid().toString());
    config->SetDatabaseName(path);
    config->SetType(Enumerations::SQLite3);
    return config;
}

void add(Context::CableContext& network)
{
    const auto types = Context::CableContext::defaultTypes();
    auto cable = std::make_shared<Cables::Entities::Cable>();
    cable->SetId(QUuid::createUuid());
    cable->SetNumber(QStringLiteral("K-1"));
    cable->SetVoltage(20000);
    auto phase = std::make_shared<Cables::Entities::Phase>();
    phase->SetId(QUuid::createUuid());
    cable->AddPhase(phase);
    auto segment = std::make_shared<Cables::Entities::Segment>();
    segment->SetId(QUuid::createUuid());
    segment->SetLength(420.5);
    segment->SetDetailId(types.getSegmentDetailCableDefault()->Id());
    phase->AddSegment(segment);

    network.attach(cable);
    network.attach(phase);
    network.attach(segment);
    network.saveChanges();
}

void edit(Context::CableContext& network)
{
    for (const auto& cable : network.Cables()) {
        cable->SetComment(QStringLiteral("checked"));
        for (const auto& phase : cable->Phases())
            qInfo() << cable->Number() << "phase" << phase->Index() << phase->Length() << "m" << phase->Velocity()
                    << "m/s";
    }
    network.saveChanges();
}

void copy(const Context::CableContext& from, Context::CableContext& to)
{
    const auto cables = from.Cables();
    to.import({cables.begin(), cables.end()}, from);
    to.saveChanges();
}

void remove(Context::CableContext& network)
{
    for (const auto& cable : network.Cables())
        cable->SetEntityState(QOR::Entities::Enumerations::Deleted);
    network.saveChanges();
}

void listMeasurements(Context::PdContext& measurements)
{
    measurements.reload();
    for (const auto& task : measurements.Tasks()) {
        const auto report = task->ReportLatest();
        if (!report)
            continue;
        measurements.loadFiles({report->Id()});
        qInfo() << task->Tester() << report->MappingEvents().size() << "events" << report->Files().size() << "files";
    }
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        qCritical() << "usage: usage FILE OTHER-FILE";
        return 2;
    }

    const auto facade = DataAccessFacade::Instance();
    QObject::connect(facade.get(), &DataAccessFacade::unknownDB,
                     [](const QString& message) { qCritical() << message; });
    QObject::connect(facade.get(), &DataAccessFacade::migrationError,
                     [](const QString& message) { qWarning() << message; });
    const auto config = configFor(arguments.at(1));
    const auto otherConfig = configFor(arguments.at(2));
    const auto database = facade->AddDatabase(config);
    const auto other = facade->AddDatabase(otherConfig);
    if (!database || !other)
        return 1;

    const auto network = database->CableContext();
    QObject::connect(network.get(), &Context::CableContext::savingFailed,
                     [](const QString& reason) { qCritical() << reason; });
    network->reload();
    add(*network);
    network->reload();
    edit(*network);
    copy(*network, *other->CableContext());
    remove(*other->CableContext());
    listMeasurements(*database->PdContext());

    facade->RemoveDatabase(config);
    facade->RemoveDatabase(otherConfig);
    return 0;
}
