#include "bench/BenchDatabase.h"
#include "bench/Stopwatch.h"
#include "bench/Suites.h"

#include <algorithm>
#include <array>
#include <map>

namespace Bench {

namespace {

using DataAccess::Enumerations::DatabaseType;
using DataAccess::Enumerations::Postgres;

constexpr std::array s_ways = {Way::Library, Way::Bare, Way::HandWritten};
constexpr std::size_t s_singles = 1000;

/// What an operation may cost at most, as a multiple of the bare interface.
std::optional<double> aim(DatabaseType type, const QString& operation)
{
    static const std::map<QString, std::pair<double, double>> aims = {{QStringLiteral("load all"), {2.2, 2.2}},
                                                                      {QStringLiteral("insert"), {1.3, 1.25}},
                                                                      {QStringLiteral("update"), {1.3, 1.25}},
                                                                      {QStringLiteral("get by id"), {1.5, 1.15}}};
    const auto entry = aims.find(operation);
    if (entry == aims.end())
        return {};
    return type == Postgres ? entry->second.second : entry->second.first;
}

/// The times of one operation, of each way in the order of s_ways.
struct Times
{
    QString operation;
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
        , m_ids(m_database.someIds(s_singles))
        , m_batch(batch)
    {
        for (std::size_t way = 0; way < s_ways.size(); ++way)
            m_contenders[way] = m_database.contender(s_ways[way]);
    }

    /// Runs every operation once in each way. The table is as before in the end.
    void round(bool withSingles)
    {
        for (std::size_t way = 0; way < s_ways.size(); ++way) {
            Contender<Kind>& contender = *m_contenders[way];
            const auto time = [&](const char* operation, const auto& work) { add(operation, way, seconds(work)); };
            {
                typename Contender<Kind>::Entities entities;
                time("load all", [&] { entities = contender.load(); });
            }
            const EntityList<Kind> batch = makeEntities<Kind>(m_batch);
            time("insert", [&] { contender.insert(batch); });
            time("update", [&] { contender.update(batch); });
            if (!withSingles) {
                contender.remove(batch);
                continue;
            }
            time("soft delete", [&] { contender.softDelete(batch); });
            time("remove", [&] { contender.remove(batch); });
            time("count", [&] { contender.count(); });
        }
        if (withSingles)
            getById();
    }

    void report(Report& report) const
    {
        for (const Times& times : m_times) {
            const auto milliseconds = [&](std::size_t way) { return 1000 * median(times.seconds[way]); };
            Measurement measurement;
            measurement.backend = backendName(m_type);
            measurement.subject = QString::fromLatin1(Kind::name);
            measurement.operation = times.operation;
            measurement.unit = QStringLiteral("ms");
            measurement.library = milliseconds(0);
            measurement.bare = milliseconds(1);
            measurement.handWritten = milliseconds(2);
            measurement.aim = aim(m_type, times.operation);
            report.add(measurement);
        }
    }

private:
    /// The ways take turns, and each of them comes first once: what a statement takes to a server and back depends on
    /// where the machine just ran its threads, and so varies more than anything else.
    void getById()
    {
        for (std::size_t turn = 0; turn < s_ways.size(); ++turn) {
            for (std::size_t i = 0; i < s_ways.size(); ++i) {
                const std::size_t way = (turn + i) % s_ways.size();
                EntityList<Kind> entities;
                add("get by id", way, seconds([&] { entities = m_contenders[way]->get(m_ids); }));
            }
        }
    }

    void add(const char* operation, std::size_t way, double seconds)
    {
        const QString name = QString::fromLatin1(operation);
        auto times = std::find_if(m_times.begin(), m_times.end(), [&](const Times& t) { return t.operation == name; });
        if (times == m_times.end())
            times = m_times.insert(times, {name, {}});
        times->seconds[way].push_back(seconds);
    }

    DatabaseType m_type;
    BenchDatabase<Kind> m_database;
    std::vector<QUuid> m_ids;
    int m_batch;
    std::array<std::unique_ptr<Contender<Kind>>, s_ways.size()> m_contenders;
    std::vector<Times> m_times;
};

template <typename Kind>
void measure(const Settings& settings, DatabaseType type, int rows, bool withSingles, Report& report)
{
    // Where PostgreSQL answers row by row, that takes a hundred times as long.
    const int batch = settings.rows(type == Postgres ? 2000 : 50000);
    RowBench<Kind> bench(type, settings.rows(rows), batch);
    for (int i = 0; i < settings.rounds(); ++i)
        bench.round(withSingles);
    bench.report(report);
}

} // namespace

void measureRows(const Settings& settings, DatabaseType type, bool withSingles, Report& report)
{
    measure<Segments>(settings, type, 200000, withSingles, report);
    measure<MappingEvents>(settings, type, 500000, withSingles, report);
}

} // namespace Bench
