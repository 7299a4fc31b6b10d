#include "migration/FileCopy.h"

#include "database/ExecutionException.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

namespace DataAccess::Manager {

namespace {

[[noreturn]] void fail(const QString& path, const QString& reason)
{
    throw Exceptions::ExecutionException((path + QStringLiteral(": ") + reason).toLocal8Bit().constData());
}

[[noreturn]] void failForSystem(const QString& path)
{
    fail(path, QString::fromLocal8Bit(std::strerror(errno)));
}

/// A connection of SQLite's own to one file. It shares the locks of the others of this process, as SQLite knows of all.
class Connection
{
public:
    Connection(QString path, int mode)
        : m_path(std::move(path))
    {
        sqlite3* opened = nullptr;
        const int code = sqlite3_open_v2(m_path.toUtf8().constData(), &opened,
                                         mode | SQLITE_OPEN_PRIVATECACHE | SQLITE_OPEN_NOMUTEX, nullptr);
        m_handle.reset(opened);
        require(code);
        sqlite3_busy_timeout(opened, 5000);
    }

    sqlite3* handle() const { return m_handle.get(); }

    void require(int code) const
    {
        if (code != SQLITE_OK)
            fail(m_path, QString::fromUtf8(m_handle ? sqlite3_errmsg(m_handle.get()) : sqlite3_errstr(code)));
    }

    /// Runs @p statement; the first column of its first row, if it has one.
    QString value(const QString& statement) const
    {
        sqlite3_stmt* prepared = nullptr;
        require(sqlite3_prepare_v2(m_handle.get(), statement.toUtf8().constData(), -1, &prepared, nullptr));
        const std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> run(prepared, sqlite3_finalize);
        const int code = sqlite3_step(prepared);
        if (code == SQLITE_DONE)
            return {};
        require(code == SQLITE_ROW ? SQLITE_OK : code);
        return QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(prepared, 0)));
    }

private:
    QString m_path;
    std::unique_ptr<sqlite3, int (*)(sqlite3*)> m_handle{nullptr, sqlite3_close_v2};
};

/// Creates @p path, which must be free, for the same users as @p original.
void createLike(const QString& original, const QString& path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(original).constData(), &status) != 0)
        failForSystem(original);
    const int file = ::open(QFile::encodeName(path).constData(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600);
    if (file < 0)
        failForSystem(path);
    // Only the administrator may give a file to its owner; it is then at least not open to more users than before. Some
    // file systems know nothing of either.
    const bool given = ::fchown(file, status.st_uid, status.st_gid) == 0;
    ::fchmod(file, given ? status.st_mode & 0777 : status.st_mode & 0700);
    ::close(file);
}

/// Makes sure that what was written to @p path, a file or a folder, is on the disk.
void flush(const QString& path)
{
    const int file = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        failForSystem(path);
    // Some file systems have nothing to flush for a folder.
    const bool flushed = ::fsync(file) == 0 || errno == EINVAL;
    const int reason = errno;
    ::close(file);
    errno = reason;
    if (!flushed)
        failForSystem(path);
}

} // namespace

FileCopy::FileCopy(sqlite3* database)
    : m_original(QString::fromUtf8(sqlite3_db_filename(database, "main")))
{}

QString FileCopy::besideOriginal(const QString& addition) const
{
    const QFileInfo file(m_original);
    const QString extension = file.suffix().isEmpty() ? QString() : QLatin1Char('.') + file.suffix();
    return file.path() + QLatin1Char('/') + file.fileName().chopped(extension.size()) + addition + extension;
}

void FileCopy::copyTo(const QString& part, const Backup::TableRows& tables) const
{
    // The connection that has the lock cannot be read from meanwhile.
    const Connection source(m_original, SQLITE_OPEN_READONLY);
    const Connection target(part, SQLITE_OPEN_READWRITE);
    // What is half written is thrown away as a whole.
    target.value(QStringLiteral("PRAGMA journal_mode = OFF"));
    sqlite3_backup* const backup = sqlite3_backup_init(target.handle(), "main", source.handle(), "main");
    if (backup == nullptr)
        fail(part, QString::fromUtf8(sqlite3_errmsg(target.handle())));
    const int code = sqlite3_backup_step(backup, -1);
    sqlite3_backup_finish(backup);
    if (code != SQLITE_DONE)
        fail(part, QString::fromUtf8(sqlite3_errstr(code)));
    // One file that needs no other, also when the original keeps a write-ahead log.
    target.value(QStringLiteral("PRAGMA journal_mode = DELETE"));
    // What constraints others have, and whether their rows keep to them, says nothing of the copy.
    target.value(QStringLiteral("PRAGMA ignore_check_constraints = ON"));
    const QString state = target.value(QStringLiteral("PRAGMA quick_check(1)"));
    if (state != QLatin1String("ok"))
        fail(part, QStringLiteral("the copy is damaged, as the database itself may be: ") + state);
    for (const auto& table : tables) {
        if (target.value(QStringLiteral("SELECT count(*) FROM \"%1\"").arg(table.first)).toLongLong() != table.second)
            fail(part, QStringLiteral("the copy of %1 lacks rows").arg(table.first));
    }
}

void FileCopy::make(const QString& part, const QString& path, const Backup::TableRows& tables) const
{
    QFile::remove(part);
    try {
        createLike(m_original, part);
        copyTo(part, tables);
        flush(part);
        if (!QFile::rename(part, path))
            fail(path, QStringLiteral("the copy cannot be given its name"));
    } catch (...) {
        QFile::remove(part);
        throw;
    }
    try {
        flush(QFileInfo(path).path());
    } catch (...) {
        QFile::remove(path);
        throw;
    }
}

} // namespace DataAccess::Manager
