#include "migration/FileCopy.h"

#include "database/DbException.h"
#include "database/backends/SqliteBackup.h"
#include "database/private/Files.h"

#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>

namespace DataAccess::Manager {

namespace {

[[noreturn]] void fail(const QString& path, const QString& reason)
{
    throw Exceptions::ExecutionException((path + QStringLiteral(": ") + reason).toLocal8Bit().constData());
}

void check(const QString& copy, const Backup::TableRows& tables)
{
    const QString faults = Database::sqliteFaults(copy, false);
    if (!faults.isEmpty())
        fail(copy, QStringLiteral("the copy is damaged, as the database itself may be: ") +
                       faults.section(QLatin1Char('\n'), 0, 0));
    for (const auto& table : tables) {
        if (Database::sqliteRowCount(copy, table.first) != table.second)
            fail(copy, QStringLiteral("the copy of %1 lacks rows").arg(table.first));
    }
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

void FileCopy::make(const QString& part, const QString& path, const Backup::TableRows& tables) const
{
    QFile::remove(part);
    try {
        Database::createFileLike(part, m_original);
        Database::backupSqlite(m_original, part, true);
        check(part, tables);
        Database::publishFile(part, path);
    } catch (...) {
        QFile::remove(part);
        QFile::remove(path);
        throw;
    }
}

} // namespace DataAccess::Manager
