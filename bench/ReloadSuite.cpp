#include "bench/BenchDatabase.h"
#include "bench/Stopwatch.h"
#include "bench/Suites.h"
#include "context/SampleNetwork.h"
#include "facade/DataAccessFacade.h"
#include "manager/IRepositoryManager.h"

namespace Bench {

using DataAccess::Enumerations::DatabaseType;

void measureReload(const Settings& settings, DatabaseType type, Report& report)
{
    Growth save{backendName(type), QStringLiteral("save network, cable"), {}};
    Growth reload{backendName(type), QStringLiteral("reload network, cable"), {}};
    const auto facade = DataAccess::DataAccessFacade::Instance();
    for (const int cables : {settings.rows(1000), settings.rows(10000)}) {
        const TestSupport::TestDatabase database(type);
        const auto config = database.config();
        const auto context = facade->AddDatabase(config)->CableContext();
        TestSupport::SampleNetwork(cables).attachTo(*context);
        save.microseconds.emplace_back(cables, 1e6 * seconds([&] { context->saveChanges(); }) / cables);
        std::vector<double> loads;
        for (int round = 0; round < settings.rounds(); ++round)
            loads.push_back(seconds([&] { context->reload(); }));
        reload.microseconds.emplace_back(cables, 1e6 * median(loads) / cables);
        facade->RemoveDatabase(config);
    }
    report.add(save);
    report.add(reload);
}

} // namespace Bench
