#include "Backup.h"

#include "Invocation.h"
#include "NewFile.h"
#include "OpenedDatabase.h"
#include "PostgresTools.h"
#include "database/backends/SqliteBackup.h"
#include "database/backends/sqlite2/WorkingCopy.h"
#include "transfer/Progress.h"

#include <QDateTime>

using namespace DataAccess;

namespace {

void backupFile(const QString& from, const NewFile& file, const Invocation& invocation)
{
    if (!Database::backupSqlite(from, file.unfinished(), true,
                                invocation.progress(QStringLiteral("Backup"), QStringLiteral("pages"))))
        throw Transfer::Cancelled();
    const QString faults = Database::sqliteFaults(file.unfinished(), false);
    if (!faults.isEmpty())
        throw ToolError(FaultsFound,
                        QStringLiteral("%1 is damaged: %2").arg(from, faults.section(QLatin1Char('\n'), 0, 0)),
                        QStringLiteral("Keep the file as it is, and take an older backup."));
}

} // namespace

void Backup::make(OpenedDatabase& database, const QString& path, bool isForced, const Invocation& invocation)
{
    const DatabaseAddress& address = database.address();
    refuseToReplace(address.path(), path);
    NewFile file(path, isForced);
    if (address.isLegacy()) {
        const NewFile workingCopy(Database::workingCopyOf(path), isForced);
        Database::copyLegacyFile(address.path(), path);
        return;
    }
    file.begin(address.path());
    if (address.isPostgres())
        PostgresTools::dumpTo(file.unfinished(), address.settings,
                              invocation.progress(QStringLiteral("Backup"), QStringLiteral("bytes")));
    else
        backupFile(address.path(), file, invocation);
    file.publish();
}

QString Backup::makeBefore(const char* purpose, OpenedDatabase& database, const Invocation& invocation)
{
    const DatabaseAddress& address = database.address();
    QString path = address.isPostgres() ? address.settings.name : address.path();
    path +=
        QStringLiteral(".before-%1-%2")
            .arg(QLatin1String(purpose), QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss-zzz")));
    make(database, path, false, invocation);
    invocation.note(QStringLiteral("The database as it was is in %1.").arg(path));
    return path;
}
