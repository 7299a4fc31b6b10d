#include "bench/GrowingSizes.h"
#include "bench/Suites.h"

namespace Bench {

using DataAccess::Enumerations::DatabaseType;

void measureRowGrowth(const Settings& settings, DatabaseType type, Report& report)
{
    GrowingSizes growth(type);
    for (const int rows : {settings.rows(50000), settings.rows(200000), settings.rows(1000000)}) {
        const BenchDatabase<Segments> database(type, 0);
        LibraryContender<Segments> library(database.database().config());
        const List<Segments::Entity> entities = makeObjects<Segments, Segments::Entity>(rows);
        growth.time("insert a row", rows, rows, [&] { library.insert(entities); });
        {
            LibraryContender<Segments>::Objects loaded;
            growth.time("load a row with all", rows, rows, [&] { loaded = library.load(); });
        }
        std::vector<QUuid> ids;
        for (std::size_t i = 0; i < entities.size(); i += entities.size() / 1000)
            ids.push_back(entities[i]->Id());
        growth.time("get a row by id", rows, static_cast<int>(ids.size()), [&] { library.get(ids); });
        growth.time("update a row", rows, rows, [&] { library.update(entities); });
        growth.time("count, a row", rows, rows, [&] { library.count(); });
        // These wait for a server's answer to each row: as many as do not take minutes.
        const int few = type == DatabaseType::Postgres ? std::min(rows, settings.rows(20000)) : rows;
        const List<Segments::Entity> some(entities.begin(), entities.begin() + few);
        growth.time("mark a row deleted", rows, few, [&] { library.softDelete(some); });
        growth.time("remove a row", rows, few, [&] { library.remove(some); });
    }
    growth.report(report);
}

} // namespace Bench
