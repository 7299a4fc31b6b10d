#include "database/private/Files.h"

#include "database/DbException.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace DataAccess::Database {

namespace {

/// Makes the content of the file, or the names in the folder, at @p path survive a power failure.
bool flushToDisk(const QString& path)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    // Some file systems have nothing to flush for a folder.
    const bool flushed = ::fsync(descriptor) == 0 || errno == EINVAL;
    const int reason = errno;
    ::close(descriptor);
    errno = reason;
    return flushed;
}

[[noreturn]] void fail(const QString& path)
{
    const QString text = QStringLiteral("%1 can't be written: %2").arg(path, qt_error_string(errno));
    throw Exceptions::ExecutionException(text.toLocal8Bit().constData());
}

} // namespace

QString filePath(const QString& name)
{
    const bool isAbsolute = !QDir::isRelativePath(name) && !name.startsWith(QLatin1Char(':'));
    if (isAbsolute || name.isEmpty() || name == QLatin1String(":memory:"))
        return name;
    return QDir::currentPath() + QLatin1Char('/') + name;
}

QString unfinishedName(const QString& path)
{
    return path + QLatin1String(".part");
}

void createFileLike(const QString& path, const QString& original)
{
    struct stat status = {};
    const bool hasOriginal = ::stat(QFile::encodeName(original).constData(), &status) == 0;
    constexpr mode_t everybody = 0666;
    constexpr mode_t owner = 0600;
    const int file = ::open(QFile::encodeName(path).constData(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC,
                            hasOriginal ? owner : everybody);
    if (file < 0)
        fail(path);
    if (hasOriginal) {
        // Only the administrator may give a file to its owner. Some file systems know nothing of either.
        const bool isGiven = ::fchown(file, status.st_uid, status.st_gid) == 0;
        ::fchmod(file, (isGiven ? status.st_mode & 0777 : status.st_mode & 0700) | owner);
    }
    ::close(file);
}

void publishFile(const QString& temporaryPath, const QString& path)
{
    const bool published =
        flushToDisk(temporaryPath) &&
        std::rename(QFile::encodeName(temporaryPath).constData(), QFile::encodeName(path).constData()) == 0 &&
        flushToDisk(QFileInfo(path).absolutePath());
    if (!published)
        fail(path);
}

} // namespace DataAccess::Database
