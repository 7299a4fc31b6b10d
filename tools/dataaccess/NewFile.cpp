#include "NewFile.h"

#include "ToolError.h"
#include "database/private/Files.h"

#include <QFile>
#include <QFileInfo>

using namespace DataAccess;

namespace {

void refuseExisting(const QString& path)
{
    if (QFileInfo::exists(path))
        throw ToolError(Failed, QStringLiteral("%1 exists already").arg(path),
                        QStringLiteral("The option --force replaces it."));
}

/// SQLite's side files of a database; with the next one of that name they would make a damaged pair.
void removeJournals(const QString& path)
{
    for (const char* suffix : {"-journal", "-wal", "-shm"})
        QFile::remove(path + QLatin1String(suffix));
}

void removeWithJournals(const QString& path)
{
    QFile::remove(path);
    removeJournals(path);
}

} // namespace

NewFile::NewFile(const QString& path, bool isForced, Leftover leftover)
    : m_path(path)
    , m_unfinished(Database::unfinishedName(path))
    , m_lock(path + QLatin1String(".lock"))
    , m_isForced(isForced)
    , m_leftover(leftover)
{
    if (path.isEmpty())
        throw ToolError(WrongUsage, QStringLiteral("A file needs a name"));
    const QFileInfo info(path);
    if (!isForced)
        refuseExisting(path);
    if (info.exists() && !info.isFile())
        throw ToolError(Failed, QStringLiteral("%1 is no regular file").arg(path));
    // Stale once its process is gone, however long ago that wrote it.
    m_lock.setStaleLockTime(0);
    if (!m_lock.tryLock()) {
        if (m_lock.error() == QLockFile::LockFailedError)
            throw ToolError(Unavailable, QStringLiteral("Another run of this program is writing %1").arg(path),
                            QStringLiteral("Try again when it has ended."));
        throw ToolError(Failed, QStringLiteral("%1 can't be written: no permission, or no such folder").arg(path));
    }
}

NewFile::~NewFile()
{
    if (m_leftover == Leftover::Removed)
        removeWithJournals(m_unfinished);
}

void NewFile::begin(const QString& original) const
{
    removeWithJournals(m_unfinished);
    Database::createFileLike(m_unfinished, original);
}

void NewFile::publish()
{
    if (!m_isForced)
        refuseExisting(m_path);
    removeJournals(m_path);
    Database::publishFile(m_unfinished, m_path);
}
