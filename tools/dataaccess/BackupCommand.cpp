#include "Backup.h"
#include "Invocation.h"
#include "OpenedDatabase.h"

#include <QFileInfo>

namespace {

ExitCode backup(const Invocation& invocation)
{
    OpenedDatabase database(DatabaseAddress::parse(invocation.argument(0)), OpenedDatabase::Access::Read, invocation);
    const QString path = invocation.argument(1);
    Backup::make(database, path, invocation.has("force"), invocation);
    const qint64 bytes = QFileInfo(path).size();
    invocation.print(
        QStringLiteral("%1 is backed up in %2 (%3).").arg(database.address().text, path, counted(bytes, "byte")));
    invocation.answer({{QStringLiteral("database"), database.address().text},
                       {QStringLiteral("file"), path},
                       {QStringLiteral("bytes"), bytes}});
    return Succeeded;
}

} // namespace

Command backupCommand()
{
    return {
        QStringLiteral("backup"),
        QStringLiteral("Copy a whole database into a file while others use it"),
        QStringLiteral("DB FILE"),
        QStringLiteral("The file holds all of one moment, appears whole or not at all, and is checked. A database of\n"
                       "SQLite gives a database of SQLite, one of PostgreSQL a file of pg_dump's custom format. The\n"
                       "backup of a legacy file is the same file, with FILE.sqlite3 beside it if it has a working\n"
                       "copy.\n\n"
                       "Examples:\n"
                       "  dataaccess backup network.vbk network-2026-11-23.vbk\n"
                       "  dataaccess backup postgresql://server/network network.dump\n"),
        {forceOption("Replace FILE if it exists.")},
        2,
        2,
        &backup};
}
