#include "database/backends/SqliteFamily.h"

#include "database/DbException.h"
#include "database/backends/Handle.h"
#include "database/private/DateTimeText.h"

#include <QHash>
#include <QLatin1String>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlQuery>
#include <QSqlResult>
#include <QVariant>

#include <sqlite3.h>

namespace DataAccess::Converter {

void SqliteValueConverter::bindValue(const QString& placeholder, const QDate& value)
{
    requireStorable(placeholder, value);
    bind(placeholder, Database::DateTimeText::format(value));
}

void SqliteValueConverter::bindValue(const QString& placeholder, const QDateTime& value)
{
    requireStorable(placeholder, value.date());
    bindTime(placeholder, value, &Database::DateTimeText::format);
}

void SqliteValueConverter::value(QByteArray& value, int column) const
{
    const QVariant stored = read(column);
    value = stored.toByteArray();
    // For no bytes at all SQLite has no address, and so Qt makes a null array of them; NULL has the type of a text.
    if (value.isNull() && stored.type() == QVariant::ByteArray)
        value = QByteArray("");
}

QDate SqliteValueConverter::toDate(int column) const
{
    return Database::DateTimeText::parseDate(toString(column));
}

QDateTime SqliteValueConverter::toDateTime(int column) const
{
    return Database::DateTimeText::parse(toString(column), Qt::LocalTime);
}

QDateTime SqliteValueConverter::toUtcDateTime(int column) const
{
    const QString text = toString(column);
    if (m_readTimeText.isNull() || text != m_readTimeText) {
        m_readTime = Database::DateTimeText::parse(text, Qt::UTC);
        m_readTimeText = text;
    }
    return m_readTime;
}

QString SqliteValueConverter::type(const Enumerations::DataType& kind, unsigned int size) const
{
    struct Kind
    {
        const char* name;
        const char* text;
        bool isSized; // otherwise it has no size
    };
    static const QHash<int, Kind> kinds = {
        {Enumerations::Integer, {"Integer", "INTEGER", true}},  {Enumerations::TimeStamp, {"TimeStamp", "TEXT", false}},
        {Enumerations::Boolean, {"Boolean", "INTEGER", false}}, {Enumerations::Numeric, {"Numeric", "REAL", false}},
        {Enumerations::Text, {"Text", "TEXT", false}},          {Enumerations::Char, {"Char", "TEXT", true}},
        {Enumerations::VarChar, {"VarChar", "TEXT", true}},     {Enumerations::ByteArray, {"ByteArray", "TEXT", false}},
        {Enumerations::Date, {"Date", "TEXT", false}}};
    const auto found = kinds.constFind(kind);
    if (found == kinds.constEnd())
        return QStringLiteral("TEXT");
    const bool fits =
        kind == Enumerations::Integer ? size == 2 || size == 4 || size == 8 : found->isSized == (size != 0);
    if (!fits)
        throw Exceptions::ExecutionException(QByteArray("Invalid ").append(found->name).append(" Size!").constData());
    return QLatin1String(found->text);
}

} // namespace DataAccess::Converter

namespace DataAccess::Database {

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

bool SqliteFamily::drives(const QSqlDriver& driver) const
{
    return driver.dbmsType() == QSqlDriver::SQLite || handleAs<sqlite3>(driver.handle(), "sqlite3*") != nullptr;
}

bool SqliteFamily::tellsUnavailable(const QSqlError& error) const
{
    const QString code = error.nativeErrorCode();
    constexpr int sqlStateSize = 5;   // of other databases; Qt calls whatever fails here an error of the connection
    constexpr int primaryCode = 0xff; // the rest tells SQLite's kinds of one failure apart
    const int primary = code.toInt() & primaryCode;
    return code.size() != sqlStateSize && (primary == SQLITE_BUSY || primary == SQLITE_LOCKED);
}

bool SqliteFamily::hasTransaction(QSqlDatabase& connection) const
{
    if (!connection.isOpen())
        return false;
    if (sqlite3* const database = sqliteDatabase(*connection.driver()))
        return sqlite3_get_autocommit(database) == 0;
    // Another copy of SQLite cannot be asked. It has no nested transactions: one begins only where there is none.
    if (connection.driver()->dbmsType() == QSqlDriver::SQLite && connection.transaction()) {
        connection.rollback();
        return false;
    }
    return true;
}

bool SqliteFamily::metLock(const QSqlDatabase& connection) const
{
    sqlite3* const database = connection.isOpen() ? sqliteDatabase(*connection.driver()) : nullptr;
    return database != nullptr && tellsUnavailable(sqliteError(database, ""));
}

QString SqliteFamily::tableCount() const
{
    // The driver for legacy files does not list the table that it has added itself.
    return QStringLiteral("SELECT count(*) FROM sqlite_master WHERE type = 'table' AND name <> '%1'")
        .arg(legacyOriginTable);
}

QString SqliteFamily::position(const QString& part, const QString& whole) const
{
    return QStringLiteral("INSTR(%1,%2)").arg(whole, part);
}

QString SqliteFamily::isTrue() const
{
    return QStringLiteral("coalesce(%1, 0) <> 0");
}

QString SqliteFamily::columnSearch() const
{
    return QStringLiteral("SELECT name, upper(type), pk FROM pragma_table_info('%1')");
}

QStringList SqliteFamily::columnTypes(Enumerations::DataType kind) const
{
    if (kind == Enumerations::Integer || kind == Enumerations::Boolean)
        return {QStringLiteral("INTEGER")};
    return {kind == Enumerations::Numeric ? QStringLiteral("REAL") : QStringLiteral("TEXT")};
}

QString SqliteFamily::lastTime() const
{
    // In a legacy file the column may hold a word in place of a time.
    return QStringLiteral("SELECT max(\"timestamp\") FROM \"%1\" WHERE \"timestamp\" < ':'");
}

} // namespace DataAccess::Database
