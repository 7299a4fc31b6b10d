// Ends with databases open: tst_facade_process HOW TYPE NAME
// HOW: "returns" from main; "outlives" the application object; "exits" from within; "thread", opened on one that has
// ended; "job", exits within a job; "removes", ends while another thread removes the database. "early" and "late",
// before and after there is an application object, nothing must open.

#include "context/CableContext.h"
#include "database/DbWorker.h"
#include "database/IDatabase.h"
#include "facade/DataAccessFacade.h"
#include "manager/IRepositoryManager.h"
#include "support/TestDatabase.h"

#include <QCoreApplication>
#include <QThread>

#include <cstdlib>
#include <thread>

using namespace DataAccess;

namespace {

std::shared_ptr<Database::DatabaseConfig> s_config;
std::shared_ptr<Interfaces::IRepositoryManager> s_kept;

bool open(char** arguments)
{
    s_config = TestSupport::serverConfig(QString::fromLocal8Bit(arguments[3]));
    s_config->SetType(static_cast<Enumerations::DatabaseType>(std::atoi(arguments[2])));
    s_kept = DataAccessFacade::Instance()->AddDatabase(s_config);
    if (!s_kept)
        return false;
    s_kept->CableContext()->reload();
    // Jobs that nobody waits for, and that have to be done all the same.
    s_kept->dbWorker()->insert([](Interfaces::IDatabase&) { QThread::msleep(100); });
    for (int i = 0; i < 10; ++i) {
        const auto owner = std::make_shared<Cables::Entities::Owner>();
        owner->SetId(QUuid::createUuid());
        delete s_kept->EditorRepositories()->OwnerRepository()->InsertAsync({owner});
    }
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
    if (how == "job") {
        s_kept->dbWorker()->insert([succeeded](Interfaces::IDatabase&) { std::exit(succeeded ? 0 : 1); });
        QThread::sleep(30);
    }
    if (how == "removes") {
        std::thread removal([] { DataAccessFacade::Instance()->RemoveDatabase(s_config); });
        while (DataAccessFacade::Instance()->GetRepositories(s_config))
            std::this_thread::yield();
        application.reset();
        removal.join();
    }
    if (how == "outlives") {
        application.reset();
        s_kept->CableContext()->reload();
    }
    return succeeded ? 0 : 1;
}
