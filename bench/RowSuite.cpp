#include "bench/BenchDatabase.h"
#include "bench/Stopwatch.h"
#include "bench/Suites.h"

#include <algorithm>
#include <array>

namespace Bench {

namespace {

using DataAccess::Enumerations::DatabaseType;
using DataAccess::Enumerations::Postgres;

constexpr std::array s_ways = {Way::Library, Way::Bare, Way::Plain, Way::ByHand};
constexpr std::size_t s_singles = 1000;

/// The times of one operation, in seconds, of each way in the order of s_ways.
struct Times
{
    const char* operation;
    std::array<std::vector<double>, s_ways.size()> seconds;
};

/// What is measured of one kind on one backend.
template <typename Kind>
class RowBench
{
public:
    RowBench(DatabaseType type, int rows, int batch)
        : m_type(type)
        , m_database(type, rows)
        , m_contenders(type, m_database.database().name())
        , m_ids(m_database.someIds(s_singles))
        , m_batch(batch)
    {}

    /// Runs every operation once in each way; the table is as before in the end. The ways take turns in coming first:
    /// what a statement takes to a server and back depends on where the machine just ran its threads.
    void round(int turn, bool withSingles)
    {
        for (std::size_t i = 0; i < s_ways.size(); ++i) {
            const std::size_t way = (static_cast<std::size_t>(turn) + i) % s_ways.size();
            m_contenders.with(s_ways[way], [&](auto& contender) { runAll(way, contender, withSingles); });
        }
    }

    void report(Report& report) const
    {
        for (const Times& times : m_times) {
            const auto milliseconds = [&](std::size_t way) { return 1000 * median(times.seconds[way]); };
            Measurement measurement;
            measurement.backend = backendName(m_type);
            measurement.subject = QString::fromLatin1(Kind::name);
            measurement.operation = QString::fromUtf8(times.operation);
            measurement.unit = QStringLiteral("ms");
            measurement.library = milliseconds(0);
            measurement.bare = milliseconds(1);
            measurement.plain = milliseconds(2);
            measurement.byHand = milliseconds(3);
            report.add(measurement);
        }
    }

private:
    template <typename Object>
    void runAll(std::size_t way, Contender<Object>& contender, bool withSingles)
    {
        const auto time = [&](const char* operation, const auto& work) { add(operation, way, seconds(work)); };
        {
            typename Contender<Object>::Objects objects;
            time("load all", [&] { objects = contender.load(); });
        }
        const List<Object> batch = makeObjects<Kind, Object>(m_batch);
        time("insert", [&] { contender.insert(batch); });
        time("update", [&] { contender.update(batch); });
        contender.remove(batch);
        if (!withSingles)
            return;
        List<Object> objects;
        time("get by id, queued together", [&] { objects = contender.get(m_ids); });
        time("get by id, one after the other", [&] { objects = contender.getEach(m_ids); });
    }

    void add(const char* operation, std::size_t way, double seconds)
    {
        const auto isOf = [&](const Times& times) { return qstrcmp(times.operation, operation) == 0; };
        auto times = std::find_if(m_times.begin(), m_times.end(), isOf);
        if (times == m_times.end())
            times = m_times.insert(times, {operation, {}});
        times->seconds[way].push_back(seconds);
    }

    DatabaseType m_type;
    BenchDatabase<Kind> m_database;
    Contenders<Kind> m_contenders;
    std::vector<QUuid> m_ids;
    int m_batch;
    std::vector<Times> m_times;
};

template <typename Kind>
void measure(const Settings& settings, DatabaseType type, int rows, bool withSingles, Report& report)
{
    // Where PostgreSQL answers row by row, that takes a hundred times as long.
    const int batch = settings.rows(type == Postgres ? 2000 : 50000);
    RowBench<Kind> bench(type, settings.rows(rows), batch);
    for (int round = 0; round < settings.rounds(); ++round)
        bench.round(round, withSingles);
    bench.report(report);
}

} // namespace

void measureRows(const Settings& settings, DatabaseType type, bool withSingles, Report& report)
{
    measure<Segments>(settings, type, 200000, withSingles, report);
    measure<MappingEvents>(settings, type, 500000, withSingles, report);
}

} // namespace Bench
