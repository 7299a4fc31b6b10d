// Ends with databases open: tst_facade_process HOW TYPE NAME
// HOW: "returns" from main; "outlives" the application object; "exits" from within; "thread", opened on one that has
// ended. "early" and "late", before and after there is an application object, nothing must open.

#include "context/CableContext.h"
#include "facade/DataAccessFacade.h"
#include "manager/IRepositoryManager.h"
#include "support/TestDatabase.h"

#include <QCoreApplication>

#include <cstdlib>
#include <thread>

using namespace DataAccess;

namespace {

std::shared_ptr<Interfaces::IRepositoryManager> s_kept;

bool open(char** arguments)
{
    const auto config = TestSupport::serverConfig(QString::fromLocal8Bit(arguments[3]));
    config->SetType(static_cast<Enumerations::DatabaseType>(std::atoi(arguments[2])));
    s_kept = DataAccessFacade::Instance()->AddDatabase(config);
    if (!s_kept)
        return false;
    s_kept->CableContext()->reload();
    // A job that nobody waits for.
    delete s_kept->EditorRepositories()->OwnerRepository()->GetAllAsync();
    return s_kept->CableContext()->Insulations().size() == 8;
}

} // namespace

int main(int argc, char** argv)
{
    const std::string how = argc == 4 ? argv[1] : "";
    if (how == "early" && open(argv))
        return 1;
    auto application = std::make_unique<QCoreApplication>(argc, argv);
    bool succeeded = false;
    if (how == "thread") {
        std::thread([&] { succeeded = open(argv); }).join();
    } else if (how == "late") {
        application.reset();
        succeeded = !open(argv);
    } else {
        succeeded = open(argv);
    }
    if (how == "exits")
        std::exit(succeeded ? 0 : 1);
    if (how == "outlives") {
        application.reset();
        s_kept->CableContext()->reload();
    }
    return succeeded ? 0 : 1;
}
