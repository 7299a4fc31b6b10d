#pragma once

#include "support/RunningWorker.h"

#include <QStringList>

namespace TestSupport {

/// Databases of the cable network as they are in the field at each version, written down here, not made by the steps.
namespace EditorFixture {

/// What every version has that belongs to others: the cable book and the tasks.
enum CableBook { Without, With };

/// A database with nothing in it.
constexpr int emptyVersion = -1;
/// A database with settings, and with cable tables from before there were versions.
constexpr int unversioned = 0;

/// Makes the tables of @p version, with rows.
void create(RunningWorker& worker, int version, CableBook cableBook);
void execute(RunningWorker& worker, const QStringList& statements);
/// The rows of a select, "|" between columns and "; " between rows.
QString rows(RunningWorker& worker, const QString& select);
/// All rows of all tables.
QStringList content(RunningWorker& worker);
/// Columns, constraints and sequences of the migrated tables.
QStringList schema(RunningWorker& worker);
/// The selects whose rows are not as promised once a database that began at @p version is migrated.
QStringList faults(RunningWorker& worker, int version, CableBook cableBook);

/// Lets every @p event on @p table fail: "INSERT", "UPDATE" or "DELETE"; only where @p condition holds, if not empty.
void forbid(RunningWorker& worker, const QString& event, const QString& table, const QString& condition = {});
void allow(RunningWorker& worker, const QString& event, const QString& table);

} // namespace EditorFixture

} // namespace TestSupport
