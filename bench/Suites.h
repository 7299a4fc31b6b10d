#pragma once

#include "bench/Report.h"
#include "database/DatabaseType.h"

#include <QStringList>

namespace Bench {

/// How much is measured.
struct Settings
{
    bool quick = false;
    /// What to measure; empty: everything.
    QStringList only;

    /// How often each operation is repeated; the median counts.
    int rounds() const { return quick ? 3 : 5; }
    /// A number of rows, or a tenth of it.
    int rows(int full) const { return quick ? full / 10 : full; }
};

/// Loading and writing rows in all ways; @p withSingles: also reading them one at a time.
void measureRows(const Settings& settings, DataAccess::Enumerations::DatabaseType type, bool withSingles,
                 Report& report);

/// The memory that a load takes at its peak, in all ways.
void measureMemory(const Settings& settings, DataAccess::Enumerations::DatabaseType type, Report& report);
/// The part of measureMemory() that is a process of its own: loads, and prints the peak in bytes. @p arguments are
/// those that the other process was given.
int loadAndPrintPeak(const QStringList& arguments);

/// An empty job's way through the worker and back, against that through a bare thread.
void measureWorker(const Settings& settings, Report& report);

/// Bringing an empty database up to date, against creating the same tables at once.
void measureMigration(const Settings& settings, Report& report);

/// Copying a whole database, compared afterwards, against loading its entities and inserting them; the backup of a file
/// against a copy of it.
void measureTransfer(const Settings& settings, DataAccess::Enumerations::DatabaseType type, Report& report);

/// The library's operations on tables of growing size.
void measureRowGrowth(const Settings& settings, DataAccess::Enumerations::DatabaseType type, Report& report);

/// The cable context, and the last step of the migration, on networks of growing size. A cable comes with twenty
/// segments, and all that a cable can have.
void measureNetworkGrowth(const Settings& settings, DataAccess::Enumerations::DatabaseType type, Report& report);

/// The files of reports and the images of stations, beside more and more others.
void measureFileGrowth(const Settings& settings, DataAccess::Enumerations::DatabaseType type, Report& report);

} // namespace Bench
