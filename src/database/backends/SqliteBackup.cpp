#include "database/backends/SqliteBackup.h"

#include "database/DbException.h"

#include <QStringList>

#include <memory>
#include <sqlite3.h>

namespace DataAccess::Database {

namespace {

using File = std::unique_ptr<sqlite3, int (*)(sqlite3*)>;
using Statement = std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)>;

constexpr int s_patience = 5000;
constexpr int s_pagesAtOnce = 2048;
constexpr int s_restartsBeforeLock = 3;

[[noreturn]] void fail(const QString& path, int status)
{
    const QString text = QStringLiteral("%1: %2").arg(path, QString::fromUtf8(sqlite3_errstr(status)));
    const int primary = status & 0xff;
    throw Exceptions::ExecutionException(text.toLocal8Bit().constData(),
                                         primary == SQLITE_BUSY || primary == SQLITE_LOCKED);
}

File open(const QString& path, int flags)
{
    sqlite3* handle = nullptr;
    const int status = sqlite3_open_v2(path.toUtf8().constData(), &handle, flags | SQLITE_OPEN_PRIVATECACHE, nullptr);
    File file(handle, &sqlite3_close);
    if (status != SQLITE_OK)
        fail(path, status);
    sqlite3_busy_timeout(handle, s_patience);
    return file;
}

void execute(const File& file, const QString& path, const char* statement)
{
    const int status = sqlite3_exec(file.get(), statement, nullptr, nullptr, nullptr);
    if (status != SQLITE_OK)
        fail(path, status);
}

/// Appends the first value of each row of @p select to @p values; gives SQLite's code at the end.
int read(const File& file, const QString& select, QStringList& values)
{
    sqlite3_stmt* handle = nullptr;
    int status = sqlite3_prepare_v2(file.get(), select.toUtf8().constData(), -1, &handle, nullptr);
    const Statement statement(handle, &sqlite3_finalize);
    while (status == SQLITE_OK || status == SQLITE_ROW) {
        status = sqlite3_step(handle);
        if (status == SQLITE_ROW)
            values.append(QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(handle, 0))));
    }
    return status;
}

/// Copies the pages; false when @p progress has ended that.
bool copyPages(sqlite3_backup* backup, const BackupProgress& progress, int& status)
{
    int restarts = 0;
    int waits = 0;
    int remaining = 0;
    do {
        status = sqlite3_backup_step(backup, restarts < s_restartsBeforeLock ? s_pagesAtOnce : -1);
        const int left = sqlite3_backup_remaining(backup);
        const int total = sqlite3_backup_pagecount(backup);
        restarts += status == SQLITE_OK && remaining > 0 && left >= remaining ? 1 : 0;
        remaining = left;
        if (progress && !progress(total - left, total))
            return false;
        if (status != SQLITE_BUSY && status != SQLITE_LOCKED)
            continue;
        // The busy handler of the connection has waited already, except for a lock that is held within the process.
        sqlite3_sleep(50);
        if (++waits > 2)
            return true;
    } while (status == SQLITE_OK || status == SQLITE_BUSY || status == SQLITE_LOCKED);
    return true;
}

} // namespace

bool backupSqlite(const QString& from, const QString& to, bool isUnseen, const BackupProgress& progress)
{
    const File source = open(from, SQLITE_OPEN_READONLY);
    const File target = open(to, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    if (isUnseen)
        execute(target, to, "PRAGMA locking_mode = EXCLUSIVE; PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF");
    sqlite3_backup* const backup = sqlite3_backup_init(target.get(), "main", source.get(), "main");
    if (backup == nullptr)
        fail(to, sqlite3_errcode(target.get()));
    int status = SQLITE_OK;
    const bool isComplete = copyPages(backup, progress, status);
    sqlite3_backup_finish(backup);
    if (isComplete && status != SQLITE_DONE)
        fail(status == SQLITE_FULL || status == SQLITE_READONLY ? to : from, status);
    // One file that needs no other, also when the original keeps a write-ahead log.
    if (isUnseen && isComplete)
        execute(target, to, "PRAGMA journal_mode = DELETE");
    return isComplete;
}

QString sqliteFaults(const QString& path, bool isDeep)
{
    const File file = open(path, SQLITE_OPEN_READONLY);
    // What constraints other programs have says nothing of the file.
    execute(file, path, "PRAGMA ignore_check_constraints = ON");
    QStringList faults;
    const int status =
        read(file, isDeep ? QStringLiteral("PRAGMA integrity_check") : QStringLiteral("PRAGMA quick_check"), faults);
    const int primary = status & 0xff;
    if (primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB)
        faults.append(QString::fromUtf8(sqlite3_errstr(status)));
    else if (status != SQLITE_DONE)
        fail(path, status);
    faults.removeAll(QStringLiteral("ok"));
    return faults.join(QLatin1Char('\n'));
}

qint64 sqliteRowCount(const QString& path, const QString& table)
{
    const File file = open(path, SQLITE_OPEN_READONLY);
    QStringList counts;
    const int status = read(file, QStringLiteral("SELECT count(*) FROM \"%1\"").arg(table), counts);
    if (status != SQLITE_DONE)
        fail(path, status);
    return counts.front().toLongLong();
}

} // namespace DataAccess::Database
