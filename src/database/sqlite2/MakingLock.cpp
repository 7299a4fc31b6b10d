#include "database/sqlite2/MakingLock.h"

#include "database/sqlite2/LegacyFileError.h"

#include <QDeadlineTimer>
#include <QThread>

#include <cerrno>
#include <sys/file.h>
#include <sys/stat.h>

namespace DataAccess::Database::Sqlite2 {

namespace {

constexpr int lockTimeout = 60000;
constexpr unsigned long lockInterval = 20;

} // namespace

MakingLock::MakingLock(const QString& path)
    : m_file(path)
{
    const QDeadlineTimer deadline(lockTimeout);
    while (!tryLock()) {
        if (deadline.hasExpired())
            throw LegacyFileError(QStringLiteral("another program has been making its working copy for too long"));
        QThread::msleep(lockInterval);
    }
}

MakingLock::~MakingLock()
{
    // Removed by name, and only then closed: whoever gets the lock on the removed file sees that, and tries again.
    QFile::remove(m_file.fileName());
}

bool MakingLock::tryLock()
{
    if (!m_file.open(QIODevice::ReadWrite))
        throw LegacyFileError(QStringLiteral("%1 can't be written: %2").arg(m_file.fileName(), m_file.errorString()));
    struct stat opened = {};
    struct stat present = {};
    const bool locked = ::flock(m_file.handle(), LOCK_EX | LOCK_NB) == 0;
    if (!locked && errno != EWOULDBLOCK && errno != EINTR)
        throw LegacyFileError(QStringLiteral("%1 can't be locked: %2").arg(m_file.fileName(), qt_error_string(errno)));
    const bool isPresent = locked && ::fstat(m_file.handle(), &opened) == 0 &&
                           ::stat(QFile::encodeName(m_file.fileName()).constData(), &present) == 0 &&
                           opened.st_dev == present.st_dev && opened.st_ino == present.st_ino;
    if (!isPresent)
        m_file.close();
    return isPresent;
}

} // namespace DataAccess::Database::Sqlite2
