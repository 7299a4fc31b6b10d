#include "database/backends/sqlite/SqliteBackend.h"

#include "database/IDatabase.h"
#include "database/backends/OpenFile.h"
#include "database/private/StatementError.h"

#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariant>

namespace DataAccess::Database {

const Backend& sqliteBackend()
{
    static const SqliteBackend backend;
    return backend;
}

namespace {

/// Why the file at @p path is no database; not valid when it is one.
QSqlError contentError(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return OpenFile::refused("No permission to read the database file");
    // A file of no bytes is a database that nothing was written to yet.
    const QByteArray start = file.read(48);
    if (start.isEmpty() || start.startsWith(QByteArray("SQLite format 3", 16)))
        return {};
    if (start.startsWith("** This file contains an SQLite 2"))
        return OpenFile::unusable("The file is a database of SQLite 2, not of SQLite 3");
    return OpenFile::unusable("The file is no database");
}

} // namespace

SqliteBackend::SqliteBackend()
    : SqliteFamily(Enumerations::SQLite3)
{}

QString SqliteBackend::driver() const
{
    return QStringLiteral("QSQLITE");
}

QString SqliteBackend::readOnlyOptions() const
{
    return QStringLiteral("QSQLITE_OPEN_READONLY");
}

QSqlError SqliteBackend::prepareOpening(const QString& name, OpenFile& file) const
{
    return file.enter(name, &contentError);
}

QSqlError SqliteBackend::probe(const QSqlDatabase& connection) const
{
    QSqlQuery query(connection);
    query.setForwardOnly(true);
    // SQLite opens anything; only reading the schema tells a damaged, truncated or locked file.
    if (query.exec(QStringLiteral("SELECT count(*) FROM sqlite_master")) && query.next())
        return {};
    const QString silence = QStringLiteral("The schema of the database cannot be read");
    const QSqlError error = query.lastError();
    return error.isValid() ? error : QSqlError(QString(), silence, QSqlError::StatementError);
}

std::shared_ptr<Interfaces::IValueConverter> SqliteBackend::converter(QSqlQuery& query) const
{
    return std::make_shared<Converter::SQLite3ValueConverter>(query);
}

QString SqliteBackend::enlargeCache(Interfaces::IDatabase& db) const
{
    const QString setSize = QStringLiteral("PRAGMA cache_size = %1");
    QSqlQuery query = db.Exec(QStringLiteral("PRAGMA cache_size"));
    const QString before = query.next() ? query.value(0).toString() : QString();
    if (before.isEmpty())
        return {};
    db.Exec(setSize.arg(QStringLiteral("-131072"))); // negative: kilobytes, not pages
    return setSize.arg(before);
}

QString SqliteBackend::bulkSettings() const
{
    // Rows in the order of their ids lie all over the file.
    return QStringLiteral("PRAGMA cache_size = -65536");
}

} // namespace DataAccess::Database
