#include "bench/Suites.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QLoggingCategory>
#include <QTextStream>

#include <ctime>

namespace {

using namespace Bench;
using DataAccess::Enumerations::Postgres;
using DataAccess::Enumerations::SQLite3;

/// The time zone of what follows, in this process and those that it starts. Null: the system's own.
void setTimeZone(const char* zone)
{
    if (zone != nullptr)
        qputenv("TZ", zone);
    else
        qunsetenv("TZ");
    tzset();
}

/// Runs @p suite on both backends.
template <typename Suite>
void onBoth(const Suite& suite)
{
    for (const auto type : {SQLite3, Postgres})
        suite(type);
}

void measure(const Settings& settings, Report& report)
{
    const auto wanted = [&](const char* name) {
        return settings.only.isEmpty() || settings.only.contains(QLatin1String(name));
    };
    setTimeZone("UTC");
    report.beginPass(QStringLiteral("TZ=UTC"));
    if (wanted("rows"))
        onBoth([&](auto type) { measureRows(settings, type, true, report); });
    if (wanted("memory"))
        onBoth([&](auto type) { measureMemory(settings, type, report); });
    if (wanted("worker"))
        measureWorker(settings, report);
    if (wanted("migration"))
        measureMigration(settings, report);
    if (wanted("transfer"))
        onBoth([&](auto type) { measureTransfer(settings, type, report); });
    if (wanted("timezone")) {
        setTimeZone(nullptr);
        report.beginPass(QStringLiteral("TZ not set, a tenth of the rows"));
        // By hand with Qt SQL a load takes a minute otherwise.
        Settings few = settings;
        few.quick = true;
        onBoth([&](auto type) { measureRows(few, type, false, report); });
        setTimeZone("UTC");
    }
    if (wanted("growth")) {
        onBoth([&](auto type) { measureRowGrowth(settings, type, report); });
        onBoth([&](auto type) { measureNetworkGrowth(settings, type, report); });
        onBoth([&](auto type) { measureFileGrowth(settings, type, report); });
    }
    report.summarize();
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    // What the library tells about its work would be part of the time.
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false\n*.info=false\nqor.migration.*=false"));

    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == QLatin1String("--peak-of-load"))
        return loadAndPrintPeak(arguments.mid(2));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Measures the library against the databases' own interfaces and against Qt SQL by hand."));
    parser.addHelpOption();
    const QCommandLineOption quick(QStringLiteral("quick"), QStringLiteral("A tenth of the rows, and fewer rounds."));
    const QCommandLineOption json(QStringLiteral("json"), QStringLiteral("Also write the results to FILE."),
                                  QStringLiteral("FILE"));
    const QCommandLineOption only(
        QStringLiteral("only"),
        QStringLiteral("Measure one of rows, memory, worker, migration, transfer, timezone, growth; "
                       "may be given more than once."),
        QStringLiteral("WHAT"));
    parser.addOptions({quick, json, only});
    parser.process(application);

    QTextStream out(stdout);
    Report report(out);
    measure(Settings{parser.isSet(quick), parser.values(only)}, report);
    if (!parser.isSet(json) || report.writeJson(parser.value(json)))
        return 0;
    QTextStream(stderr) << "bench: cannot write " << parser.value(json) << '\n';
    return 1;
}
