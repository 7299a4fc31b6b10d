#include "bench/BenchDatabase.h"
#include "bench/Stopwatch.h"
#include "bench/Suites.h"

#include <sched.h>

namespace Bench {

namespace {

/// Keeps the process on the core that it runs on, as long as the object lives.
class OneCore
{
public:
    OneCore()
    {
        cpu_set_t core;
        CPU_ZERO(&core);
        CPU_SET(static_cast<std::size_t>(sched_getcpu()), &core);
        if (sched_getaffinity(0, sizeof m_before, &m_before) != 0 || sched_setaffinity(0, sizeof core, &core) != 0)
            qFatal("The process cannot be kept on one core");
    }
    ~OneCore() { sched_setaffinity(0, sizeof m_before, &m_before); }
    OneCore(const OneCore&) = delete;
    OneCore& operator=(const OneCore&) = delete;

private:
    cpu_set_t m_before;
};

} // namespace

void measureRoundTrip(const Settings& settings, Report& report)
{
    // Between two cores, how deep the other one sleeps would count ten times as much as what either side does.
    const OneCore core;
    const TestSupport::TestDatabase database(DataAccess::Enumerations::SQLite3);
    TestSupport::RunningWorker worker(database.config());
    BareThread bare;
    const int jobs = settings.rows(20000);
    std::vector<double> viaLibrary;
    std::vector<double> viaThread;
    for (int round = 0; round < settings.rounds(); ++round) {
        int done = 0;
        viaLibrary.push_back(seconds([&] {
            for (int i = 0; i < jobs; ++i)
                worker.run([&](DataAccess::Interfaces::IDatabase&) { ++done; });
        }));
        viaThread.push_back(seconds([&] {
            for (int i = 0; i < jobs; ++i) {
                bare.submit([&] { ++done; });
                bare.wait();
            }
        }));
        if (done != 2 * jobs)
            qFatal("A job was lost");
    }
    Measurement measurement;
    measurement.subject = QStringLiteral("empty job");
    measurement.operation = QStringLiteral("round trip");
    measurement.unit = QStringLiteral("µs");
    measurement.library = 1e6 * median(viaLibrary) / jobs;
    measurement.bare = 1e6 * median(viaThread) / jobs;
    measurement.aim = 1.3;
    report.add(measurement);
}

} // namespace Bench
