#include "database/backends/sqlite2/LockedFile.h"

#include "database/backends/sqlite2/LegacyFileError.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QFileInfo>
#include <QThread>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace DataAccess::Database::Sqlite2 {

namespace {

constexpr int lockTimeout = 5000;
constexpr int makingTimeout = 60000;
constexpr unsigned long lockInterval = 20;

void openForReading(QFile& file)
{
    // Opening a pipe would wait for a writer, and reading a device might never end.
    if (!QFileInfo(file.fileName()).isFile())
        throw LegacyFileError(QStringLiteral("%1 is no regular file").arg(file.fileName()));
    if (!file.open(QIODevice::ReadOnly))
        throw LegacyFileError(QStringLiteral("%1 can't be read: %2").arg(file.fileName(), file.errorString()));
}

QByteArray hashOf(QIODevice& device)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    if (!hash.addData(&device))
        throw LegacyFileError(device.errorString());
    return hash.result();
}

} // namespace

LockedFile::LockedFile(const QString& path)
    : m_file(path)
    , m_journal(path + QLatin1String("-journal"))
{
    if (!QFileInfo::exists(path))
        throw LegacyFileError(QStringLiteral("there is no such file"));
    openForReading(m_file);
    lock();
    if (m_journal.exists())
        openForReading(m_journal);
}

void LockedFile::lock()
{
    // A lock of the open file, not of the process: two threads may read one file, and the first to close it must not
    // end the lock of the other.
    struct flock range = {};
    range.l_type = F_RDLCK;
    range.l_whence = SEEK_SET;
    const QDeadlineTimer deadline(lockTimeout);
    while (::fcntl(m_file.handle(), F_OFD_SETLK, &range) != 0) {
        if (errno != EAGAIN && errno != EACCES && errno != EINTR)
            throw LegacyFileError(QStringLiteral("it can't be locked: %1").arg(qt_error_string(errno)));
        if (deadline.hasExpired())
            throw LegacyFileError(QStringLiteral("another program is writing to it"));
        QThread::msleep(lockInterval);
    }
}

QIODevice& LockedFile::file()
{
    m_file.seek(0);
    return m_file;
}

QIODevice* LockedFile::journal()
{
    if (!m_journal.isOpen())
        return nullptr;
    m_journal.seek(0);
    return &m_journal;
}

QByteArray LockedFile::fingerprint()
{
    QByteArray hashes = hashOf(file());
    if (QIODevice* const undo = journal())
        hashes += hashOf(*undo);
    return QCryptographicHash::hash(hashes, QCryptographicHash::Sha256).toHex();
}

MakingLock::MakingLock(const QString& path)
    : m_file(path)
{
    const QDeadlineTimer deadline(makingTimeout);
    while (!tryLock()) {
        if (deadline.hasExpired())
            throw LegacyFileError(QStringLiteral("another program has been making its working copy for too long"));
        QThread::msleep(lockInterval);
    }
}

MakingLock::~MakingLock()
{
    // Removed by name, and only then closed: a process that gets the lock on the removed file sees that, and tries
    // again.
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
