#include "Invocation.h"
#include "NewFile.h"
#include "OpenedDatabase.h"
#include "PostgresTools.h"
#include "database/backends/SqliteBackup.h"
#include "database/backends/sqlite2/WorkingCopy.h"
#include "transfer/private/TableRows.h"

using namespace DataAccess;

namespace {

const QString s_refused = QStringLiteral("The option --force replaces them.");

void refuseRows(OpenedDatabase& database, const Invocation& invocation)
{
    const qint64 rows = Transfer::rowCount(database.database());
    if (rows > 0 && !invocation.has("force"))
        throw ToolError(Failed, QStringLiteral("%1 holds %2").arg(database.address().text, counted(rows, "row")),
                        s_refused);
}

/// Whether the file is a database that SQLite can write; what is none can only be replaced as a file.
bool holdsDatabase(const DatabaseAddress& target, const Invocation& invocation)
{
    if (kindOf(target.path()) != FileKind::SQLite3 && kindOf(target.path()) != FileKind::Empty)
        return false;
    try {
        OpenedDatabase database(target, OpenedDatabase::Access::Read, invocation);
        refuseRows(database, invocation);
        return Database::sqliteFaults(target.path(), false).isEmpty();
    } catch (const ToolError& error) {
        if (error.code() == Unavailable || !invocation.has("force"))
            throw;
        return false;
    }
}

void restoreFile(const QString& file, const DatabaseAddress& target, const Invocation& invocation)
{
    const QString faults = Database::sqliteFaults(file, false);
    if (!faults.isEmpty())
        throw ToolError(FaultsFound,
                        QStringLiteral("%1 is damaged: %2").arg(file, faults.section(QLatin1Char('\n'), 0, 0)),
                        QStringLiteral("Take another backup."));
    const auto progress = invocation.progress(QStringLiteral("Restore"), QStringLiteral("pages"));
    if (target.exists() && holdsDatabase(target, invocation)) {
        if (!Database::backupSqlite(file, target.path(), false, progress))
            throw Transfer::Cancelled();
        return;
    }
    NewFile whole(target.path(), invocation.has("force"));
    whole.begin(target.exists() ? target.path() : file);
    if (!Database::backupSqlite(file, whole.unfinished(), true, progress))
        throw Transfer::Cancelled();
    whole.publish();
}

void restoreArchive(const QString& file, const DatabaseAddress& target, const Invocation& invocation)
{
    OpenedDatabase database(target, OpenedDatabase::Access::Write, invocation);
    refuseRows(database, invocation);
    PostgresTools::restoreFrom(file, database, invocation.progress(QStringLiteral("Restore"), QStringLiteral("bytes")));
}

void restoreLegacy(const QString& file, const DatabaseAddress& target, const Invocation& invocation)
{
    const NewFile whole(target.path(), invocation.has("force"));
    const NewFile workingCopy(Database::workingCopyOf(target.path()), invocation.has("force"));
    Database::copyLegacyFile(file, target.path());
}

ExitCode restore(const Invocation& invocation)
{
    const QString file = invocation.argument(0);
    const DatabaseAddress target = DatabaseAddress::parse(invocation.argument(1));
    const FileKind kind = kindOf(file);
    if (kind == FileKind::Missing)
        throw ToolError(Failed, QStringLiteral("There is no file %1").arg(file));
    refuseToReplace(file, target.path());
    if (kind != FileKind::SQLite2 && kind != FileKind::SQLite3 && kind != FileKind::PostgresArchive)
        throw ToolError(Failed, QStringLiteral("%1 is no backup").arg(file));
    if ((kind == FileKind::PostgresArchive) != target.isPostgres())
        throw ToolError(WrongUsage,
                        QStringLiteral("%1 is a backup of another kind of database than %2").arg(file, target.text),
                        QStringLiteral("Restore it into a database of its kind, and then use \"dataaccess copy\"."));
    if (kind == FileKind::SQLite3)
        restoreFile(file, target, invocation);
    else if (kind == FileKind::PostgresArchive)
        restoreArchive(file, target, invocation);
    else
        restoreLegacy(file, target, invocation);

    OpenedDatabase restored(DatabaseAddress::parse(invocation.argument(1)), OpenedDatabase::Access::Read, invocation);
    const qint64 rows = Transfer::rowCount(restored.database());
    invocation.print(QStringLiteral("%1 is restored from %2 (%3).").arg(target.text, file, counted(rows, "row")));
    invocation.answer(
        {{QStringLiteral("database"), target.text}, {QStringLiteral("file"), file}, {QStringLiteral("rows"), rows}});
    return Succeeded;
}

} // namespace

Command restoreCommand()
{
    return {QStringLiteral("restore"),
            QStringLiteral("Make a database what a backup of it holds"),
            QStringLiteral("FILE DB"),
            QStringLiteral(
                "The backup is looked through before anything is changed. Who reads the database meanwhile sees\n"
                "all of the old or all of the new; a restore that is broken off changes nothing. A database\n"
                "on a server must exist; all that the backup holds is replaced there.\n\n"
                "Examples:\n"
                "  dataaccess restore network-2026-11-23.vbk network.vbk\n"
                "  dataaccess restore --force network.dump postgresql://server/network\n"),
            {forceOption("Replace what DB holds.")},
            2,
            2,
            &restore};
}
