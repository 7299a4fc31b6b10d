#include "database/FilePublication.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>

namespace DataAccess::Database {

namespace {

/// Makes the content of the file, or the names in the folder, at @p path survive a power failure.
bool flushToDisk(const QString& path)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    const bool flushed = ::fsync(descriptor) == 0;
    const int reason = errno;
    ::close(descriptor);
    errno = reason;
    return flushed;
}

} // namespace

QString unfinishedName(const QString& path)
{
    return path + QLatin1String(".part");
}

void publishFile(const QString& temporaryPath, const QString& path)
{
    const bool published =
        flushToDisk(temporaryPath) &&
        std::rename(QFile::encodeName(temporaryPath).constData(), QFile::encodeName(path).constData()) == 0 &&
        flushToDisk(QFileInfo(path).absolutePath());
    if (!published)
        throw std::runtime_error(
            QStringLiteral("%1 can't be written: %2").arg(path, qt_error_string(errno)).toStdString());
}

} // namespace DataAccess::Database
