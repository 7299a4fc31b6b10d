#include "bench/BenchDatabase.h"
#include "bench/Stopwatch.h"
#include "bench/Suites.h"
#include "database/backends/SqliteBackup.h"
#include "database/private/Files.h"
#include "transfer/DatabaseCopy.h"
#include "transfer/private/DirectDatabase.h"

#include <QFile>
#include <QTemporaryDir>

namespace Bench {

namespace {

using DataAccess::Enumerations::DatabaseType;
using DataAccess::Enumerations::SQLite3;
using TestSupport::TestDatabase;

DataAccess::Transfer::ConnectionSettings settingsOf(const TestDatabase& database)
{
    const auto config = database.config();
    DataAccess::Transfer::ConnectionSettings settings;
    settings.type = database.type();
    settings.name = database.name();
    settings.password = config->Password();
    if (settings.type != SQLite3)
        settings.server = {{QStringLiteral("host"), config->HostName()},
                           {QStringLiteral("port"), QString::number(config->Port())},
                           {QStringLiteral("user"), config->UserName()}};
    return settings;
}

double secondsOfCopy(const TestDatabase& from, const TestDatabase& to)
{
    const DataAccess::Transfer::DirectDatabase source(settingsOf(from));
    const DataAccess::Transfer::DirectDatabase target(settingsOf(to));
    return seconds([&] { DataAccess::Transfer::DatabaseCopy(source.database(), target.database()).run(); });
}

double secondsOfLoadAndInsert(const TestDatabase& from, const TestDatabase& to)
{
    LibraryContender<MappingEvents> source(from.config());
    LibraryContender<MappingEvents> target(to.config());
    return seconds([&] {
        const auto entities = source.load();
        List<MappingEvents::Entity> list;
        for (const auto& entity : entities)
            list.push_back(entity);
        target.insert(list);
    });
}

Measurement measurementOf(DatabaseType type, const QString& operation, const std::vector<double>& ours,
                          const std::vector<double>& others)
{
    Measurement measurement;
    measurement.backend = backendName(type);
    measurement.subject = QString::fromLatin1(MappingEvents::name);
    measurement.operation = operation;
    measurement.unit = QStringLiteral("ms");
    measurement.library = 1000 * median(ours);
    measurement.bare = 1000 * median(others);
    return measurement;
}

void measureBackup(const Settings& settings, const TestDatabase& database, Report& report)
{
    const QTemporaryDir folder;
    std::vector<double> backups;
    std::vector<double> copies;
    for (int round = 0; round < settings.rounds(); ++round) {
        const auto target = [&](const char* name) { return folder.filePath(QString::fromLatin1(name)); };
        for (const char* name : {"backup", "copy"})
            QFile::remove(target(name));
        backups.push_back(seconds([&] {
            DataAccess::Database::backupSqlite(database.name(), target("part"), true);
            DataAccess::Database::publishFile(target("part"), target("backup"));
        }));
        copies.push_back(seconds([&] {
            QFile::copy(database.name(), target("part"));
            DataAccess::Database::publishFile(target("part"), target("copy"));
        }));
    }
    report.add(measurementOf(SQLite3, QStringLiteral("backup, against cp"), backups, copies));
}

} // namespace

void measureTransfer(const Settings& settings, DatabaseType type, Report& report)
{
    const BenchDatabase<MappingEvents> source(SQLite3, settings.rows(1000000));
    std::vector<double> copies;
    std::vector<double> inserts;
    for (int round = 0; round < settings.rounds(); ++round) {
        const TestDatabase copy(type);
        migrate(copy.config());
        copies.push_back(secondsOfCopy(source.database(), copy));
        const TestDatabase inserted(type);
        migrate(inserted.config());
        inserts.push_back(secondsOfLoadAndInsert(source.database(), inserted));
    }
    report.add(measurementOf(type, QStringLiteral("copy, against load and insert"), copies, inserts));
    if (type == SQLite3)
        measureBackup(settings, source.database(), report);
}

} // namespace Bench
