#include "bench/BenchDatabase.h"
#include "bench/Stopwatch.h"
#include "bench/Suites.h"

namespace Bench {

namespace {

using DataAccess::Enumerations::SQLite3;

/// The statements that make the tables of a migrated file at once.
std::string finalSchema()
{
    const TestSupport::TestDatabase database(SQLite3);
    migrate(database.config());
    std::string statements = "BEGIN;";
    BareSqlite(*database.config())
        .select("SELECT sql FROM sqlite_master WHERE sql IS NOT NULL AND name NOT LIKE 'sqlite_%'",
                [&](const auto& row) { statements += row.text(0).toStdString() + ";"; });
    return statements + "COMMIT";
}

} // namespace

void measureMigration(const Settings& settings, Report& report)
{
    const std::string schema = finalSchema();
    std::vector<double> viaLibrary;
    std::vector<double> atOnce;
    for (int round = 0; round < settings.rounds(); ++round) {
        const TestSupport::TestDatabase migrated(SQLite3);
        viaLibrary.push_back(seconds([&] { migrate(migrated.config()); }));
        const TestSupport::TestDatabase created(SQLite3);
        atOnce.push_back(seconds([&] { BareSqlite(*created.config()).run(schema); }));
    }
    Measurement measurement;
    measurement.backend = backendName(SQLite3);
    measurement.subject = QStringLiteral("fresh file");
    measurement.operation = QStringLiteral("migration");
    measurement.unit = QStringLiteral("ms");
    measurement.library = 1000 * median(viaLibrary);
    measurement.bare = 1000 * median(atOnce);
    report.add(measurement);
}

} // namespace Bench
