#include "database/native/SqliteStatement.h"

#include "database/native/Handle.h"

#include <QLatin1String>
#include <QSqlDriver>
#include <QSqlQuery>
#include <QSqlResult>
#include <QVariant>

#include <sqlite3.h>

namespace DataAccess::Database::Native {

namespace {

/// Whether @p database, that of @p driver, was made by the copy of SQLite that this library uses.
bool isOwn(sqlite3* database, const QSqlDriver& driver)
{
    // Only of one and the same source may a copy be asked about the other's database.
    QSqlQuery query(driver.createResult());
    if (!query.exec(QStringLiteral("SELECT sqlite_source_id()")) || !query.next() ||
        query.value(0).toString() != QLatin1String(sqlite3_sourceid()))
        return false;
    // Each copy has file systems of its own.
    sqlite3_vfs* used = nullptr;
    if (sqlite3_file_control(database, "main", SQLITE_FCNTL_VFS_POINTER, static_cast<void*>(&used)) != SQLITE_OK)
        return false;
    for (sqlite3_vfs* own = sqlite3_vfs_find(nullptr); own != nullptr; own = own->pNext) {
        if (own == used)
            return true;
    }
    return false;
}

} // namespace

sqlite3* sqliteDatabase(const QSqlDriver& driver)
{
    auto* const database = handleAs<sqlite3>(driver.handle(), "sqlite3*");
    if (database == nullptr)
        return nullptr;
    // All connections are made by the same driver.
    static const bool own = isOwn(database, driver);
    return own ? database : nullptr;
}

sqlite3_stmt* sqliteStatement(const QSqlQuery& query)
{
    if (query.driver() == nullptr || sqliteDatabase(*query.driver()) == nullptr)
        return nullptr;
    return handleAs<sqlite3_stmt>(query.result()->handle(), "sqlite3_stmt*");
}

QSqlError sqliteError(sqlite3* database, const char* what)
{
    return QSqlError(QLatin1String(what), QString::fromUtf8(sqlite3_errmsg(database)), QSqlError::StatementError,
                     QString::number(sqlite3_errcode(database)));
}

QSqlError errorOfStep(sqlite3_stmt* statement)
{
    sqlite3_reset(statement); // Only then is the message the one of the failure.
    return sqliteError(sqlite3_db_handle(statement), "Unable to fetch row");
}

} // namespace DataAccess::Database::Native
