#pragma once

#include "support/RunningWorker.h"
#include "support/TestDatabase.h"

#include <QStringList>
#include <QTest>

namespace TestSupport {

/// Databases as they are in the field at each version, written down in files here, not made by the steps.
namespace MigrationFixture {

/// A file of databases.
enum Family { Editor, Pd };

/// What every version of the cable network has that belongs to others: the cable book and the tasks.
enum CableBook { Without, With };

/// A database with nothing in it. One of version 0 has settings, and cable tables from before there were versions.
constexpr int emptyVersion = -1;

/// A database, its worker and the manager under test.
template <typename Manager>
struct Opened
{
    Opened() { manager.setDbWorker(worker.get()); }

    TestDatabase database;
    RunningWorker worker{database.config()};
    Manager manager;
};

/// Adds a row for each backend to a table whose first column is `backend`.
template <typename... Values>
void addCase(const QString& name, const Values&... values)
{
    for (const auto backend : {DataAccess::Enumerations::SQLite3, DataAccess::Enumerations::Postgres}) {
        const bool isFile = backend == DataAccess::Enumerations::SQLite3;
        QTestData& row = QTest::addRow("%s, %s", isFile ? "SQLite" : "PostgreSQL", qPrintable(name));
        row << static_cast<int>(backend);
        (row << ... << values);
    }
}

/// Makes the tables of @p version, with rows.
void create(RunningWorker& worker, Family family, int version, CableBook cableBook = Without);
void execute(RunningWorker& worker, const QStringList& statements);
/// The rows of a select, "|" between columns and "; " between rows.
QString rows(RunningWorker& worker, const QString& select);
/// All rows of all tables.
QStringList content(RunningWorker& worker);
/// The same of the copies that were made before the cable network was migrated; empty without a copy.
QStringList backupContent(RunningWorker& worker, const TestDatabase& database);
/// Columns, constraints and sequences of the migrated tables.
QStringList schema(RunningWorker& worker);
/// The selects whose rows are not as promised once a database that began at @p version is migrated.
QStringList faults(RunningWorker& worker, Family family, int version, CableBook cableBook = Without);

/// Lets every @p event on @p table fail: "INSERT", "UPDATE" or "DELETE"; only where @p condition holds, if not empty.
void forbid(RunningWorker& worker, const QString& event, const QString& table, const QString& condition = {});
void allow(RunningWorker& worker, const QString& event, const QString& table);

} // namespace MigrationFixture

} // namespace TestSupport
