#include "bench/BenchDatabase.h"
#include "bench/Suites.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTextStream>

namespace Bench {

namespace {

using DataAccess::Enumerations::DatabaseType;

/// A line "key: number kB" of the kernel's account of this process, in bytes.
qint64 memory(const char* key)
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("/proc/self/status cannot be read");
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith(key))
            return line.simplified().split(' ').at(1).toLongLong() * 1024;
    }
    qFatal("/proc/self/status has no line %s", key);
}

template <typename Kind>
qint64 peakOfLoad(Way way, DatabaseType type, const QString& name)
{
    return Contenders<Kind>(type, name).with(way, [](auto& contender) {
        contender.insert({}); // opens the connection
        const qint64 before = memory("VmRSS:");
        const auto objects = contender.load();
        return memory("VmHWM:") - before;
    });
}

/// The peak of a load in a process of its own.
template <typename Kind>
double peak(Way way, const BenchDatabase<Kind>& database)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(),
                  {QStringLiteral("--peak-of-load"), QString::fromLatin1(Kind::table),
                   QString::number(static_cast<int>(way)), QString::number(database.database().type()),
                   database.database().name()});
    bool isNumber = false;
    const bool ended = process.waitForFinished(-1);
    const double bytes = process.readAllStandardOutput().trimmed().toDouble(&isNumber);
    if (!ended || process.exitCode() != 0 || !isNumber)
        qFatal("The process that loads the rows has failed");
    return bytes;
}

template <typename Kind>
void measure(DatabaseType type, int rows, Report& report)
{
    const BenchDatabase<Kind> database(type, rows);
    constexpr double megabyte = 1024 * 1024;
    Measurement measurement;
    measurement.backend = backendName(type);
    measurement.subject = QString::fromLatin1(Kind::name);
    measurement.operation = QStringLiteral("peak memory of a load");
    measurement.unit = QStringLiteral("MB");
    measurement.library = peak(Way::Library, database) / megabyte;
    measurement.bare = peak(Way::Bare, database) / megabyte;
    // An entity may take that much more than its values: its tables of functions, its observers, its weak pointers.
    measurement.plain = (peak(Way::Plain, database) + 60.0 * rows) / megabyte;
    measurement.byHand = peak(Way::ByHand, database) / megabyte;
    report.add(measurement);
}

} // namespace

int loadAndPrintPeak(const QStringList& arguments)
{
    if (arguments.size() != 4)
        return 2;
    const auto way = static_cast<Way>(arguments[1].toInt());
    const auto type = static_cast<DatabaseType>(arguments[2].toInt());
    const bool ofSegments = arguments[0] == QLatin1String(Segments::table);
    const auto peak = ofSegments ? peakOfLoad<Segments> : peakOfLoad<MappingEvents>;
    QTextStream(stdout) << peak(way, type, arguments[3]) << '\n';
    return 0;
}

void measureMemory(const Settings& settings, DatabaseType type, Report& report)
{
    measure<Segments>(type, settings.rows(200000), report);
    measure<MappingEvents>(type, settings.rows(500000), report);
}

} // namespace Bench
