#pragma once

#include "DatabaseAddress.h"

class Invocation;
class OpenedDatabase;

/// Whole copies of databases, in files.
namespace Backup {

/// Copies the database into the file @p path, which appears whole or not at all, and checks it. Throws ToolError.
void make(OpenedDatabase& database, const QString& path, bool isForced, const Invocation& invocation);
/// Copies the database into a file beside it, or for a database on a server in the current folder, which has @p purpose
/// and the time in its name; says so, and gives the path.
QString makeBefore(const char* purpose, OpenedDatabase& database, const Invocation& invocation);

} // namespace Backup
