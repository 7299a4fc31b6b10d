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

/// Loading and writing rows in all three ways; @p withSingles: also what is done one row at a time, and the counting.
void measureRows(const Settings& settings, DataAccess::Enumerations::DatabaseType type, bool withSingles,
                 Report& report);

/// The memory that a load takes at its peak, in the library's way and the bare one.
void measureMemory(const Settings& settings, DataAccess::Enumerations::DatabaseType type, Report& report);
/// The part of measureMemory() that is a process of its own: loads, and prints the peak in bytes. @p arguments are
/// those that the other process was given.
int loadAndPrintPeak(const QStringList& arguments);

/// An empty job's way through the worker and back, against that through a bare thread.
void measureRoundTrip(const Settings& settings, Report& report);

/// Bringing an empty database up to date, against creating the same tables at once.
void measureMigration(const Settings& settings, Report& report);

/// The library's operations on tables of growing size.
void measureGrowth(const Settings& settings, DataAccess::Enumerations::DatabaseType type, Report& report);

/// Saving and loading whole cable networks of two sizes through the cable context; the cost of one cable of twenty
/// segments.
void measureReload(const Settings& settings, DataAccess::Enumerations::DatabaseType type, Report& report);

/// Copying a whole database, compared afterwards, against loading its entities and inserting them; the backup of a file
/// against a copy of it.
void measureTransfer(const Settings& settings, DataAccess::Enumerations::DatabaseType type, Report& report);

} // namespace Bench
