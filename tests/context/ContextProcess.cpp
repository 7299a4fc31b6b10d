// Works on a database as a program of its own: tst_context_process save|describe TYPE NAME CABLES
// "save" attaches a sample network, says so, and saves it; "describe" prints a hash of all that a load gives.

#include "context/SampleNetwork.h"
#include "facade/DataAccessFacade.h"
#include "manager/IRepositoryManager.h"
#include "support/TestDatabase.h"

#include <QCoreApplication>
#include <QCryptographicHash>

#include <cstdio>

using namespace DataAccess;

namespace {

std::shared_ptr<Interfaces::IConfig> configFrom(const QStringList& arguments)
{
    auto config = TestSupport::serverConfig(arguments.at(3));
    config->SetType(static_cast<Enumerations::DatabaseType>(arguments.at(2).toInt()));
    return config;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 5)
        return 2;
    const auto manager = DataAccessFacade::Instance()->AddDatabase(configFrom(arguments));
    if (!manager)
        return 1;
    const auto context = manager->CableContext();
    QByteArray said;
    if (arguments.at(1) == QLatin1String("save")) {
        TestSupport::SampleNetwork(arguments.at(4).toInt()).attachTo(*context);
        std::puts("saving");
        std::fflush(stdout);
        context->saveChanges();
        said = "saved";
    } else {
        context->reload();
        said = QCryptographicHash::hash(TestSupport::describe(*context), QCryptographicHash::Sha256).toHex();
    }
    std::puts(said.constData());
    return 0;
}
