#include "bench/BenchDatabase.h"
#include "bench/Stopwatch.h"
#include "bench/Suites.h"

#include <algorithm>

namespace Bench {

namespace {

using DataAccess::Enumerations::DatabaseType;

/// Takes as many segments as @p rows through all operations, and adds what one row has cost to @p results.
void measure(DatabaseType type, int rows, std::vector<Growth>& results)
{
    const BenchDatabase<Segments> database(type, 0);
    const auto library = database.contender(Way::Library);
    const EntityList<Segments> entities = makeEntities<Segments>(rows);
    std::size_t step = 0;
    const auto time = [&](const char* operation, int operations, const auto& work) {
        if (step == results.size())
            results.push_back({backendName(type), QString::fromLatin1(operation), {}});
        results[step++].microseconds.emplace_back(rows, 1e6 * seconds(work) / operations);
    };
    time("insert", rows, [&] { library->insert(entities); });
    {
        Contender<Segments>::Entities loaded;
        time("load all", rows, [&] { loaded = library->load(); });
    }
    std::vector<QUuid> ids;
    for (std::size_t i = 0; i < entities.size(); i += entities.size() / 1000)
        ids.push_back(entities[i]->Id());
    time("get by id", static_cast<int>(ids.size()), [&] { library->get(ids); });
    time("update", rows, [&] { library->update(entities); });
    // These wait for a server's answer to each row: as many as do not take minutes.
    const auto few = static_cast<std::ptrdiff_t>(type == DatabaseType::Postgres ? std::min(rows, 20000) : rows);
    const EntityList<Segments> some(entities.begin(), entities.begin() + few);
    time("soft delete", static_cast<int>(few), [&] { library->softDelete(some); });
    time("count", rows, [&] { library->count(); });
    time("remove", static_cast<int>(few), [&] { library->remove(some); });
}

} // namespace

void measureGrowth(const Settings& settings, DatabaseType type, Report& report)
{
    const std::vector<int> sizes =
        settings.quick ? std::vector<int>{5000, 50000} : std::vector<int>{50000, 200000, 1000000};
    std::vector<Growth> results;
    for (const int rows : sizes)
        measure(type, rows, results);
    for (const Growth& growth : results)
        report.add(growth);
}

} // namespace Bench
