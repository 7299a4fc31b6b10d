#pragma once

#include "database/ValueConverter.h"
#include "database/backends/Backend.h"

#include <QLatin1String>

struct sqlite3;
struct sqlite3_stmt;

namespace DataAccess::Converter {

/// The conversions of the SQLite family, which keeps dates and times as text: "yyyy-MM-dd" and "yyyy-MM-dd
/// HH:mm:ss.zzz".
class DATAACCESS_EXPORT SqliteValueConverter : public ValueConverter
{
public:
    using ValueConverter::bindValue;
    using ValueConverter::value;
    using ValueConverter::ValueConverter;

    void bindValue(const QString& placeholder, const QDate& value) override;
    void bindValue(const QString& placeholder, const QDateTime& value) override;
    void value(QByteArray& value, int column) const override;
    QDate toDate(int column) const override;
    QDateTime toDateTime(int column) const override;
    QString type(const Enumerations::DataType& kind, unsigned int size) const override;
    QDateTime toUtcDateTime(int column) const override;

private:
    // Rows that were written together share one time, which is then not parsed for each of them.
    mutable QString m_readTimeText;
    mutable QDateTime m_readTime;
};

} // namespace DataAccess::Converter

namespace DataAccess::Database {

// The family: databases whose statements SQLite 3 runs, be it on a file of its own or on the copy of a legacy one.

/// The table that marks the working copy of a legacy file, which is a database of SQLite 3; not the user's.
constexpr QLatin1String legacyOriginTable("sqlite2_origin", 14);

// SQLite's own databases and statements behind those of Qt SQL. They are null when this library and Qt's driver do not
// use one and the same copy of SQLite: nothing must be touched by another copy than the one that made it.

/// The database of @p driver, which is open.
sqlite3* sqliteDatabase(const QSqlDriver& driver);

/// The statement of @p query, which is prepared.
sqlite3_stmt* sqliteStatement(const QSqlQuery& query);

/// What Qt's driver says when @p what has just failed on @p database.
QSqlError sqliteError(sqlite3* database, const char* what);

/// Ends the run of @p statement that has failed. Gives what Qt's driver says of such a failure.
QSqlError errorOfStep(sqlite3_stmt* statement);

/// What the backends of the family have in common.
class SqliteFamily : public Backend
{
public:
    bool isFile() const override { return true; }

    bool hasTransaction(QSqlDatabase& connection) const override;
    bool metLock(const QSqlDatabase& connection) const override;

    QString writeBegin() const override { return QStringLiteral("BEGIN IMMEDIATE"); }
    QString tableCount() const override;
    QString nextId() const override { return QStringLiteral("SELECT IFNULL(MAX(OID),0) + 1 FROM \"%1\" LIMIT 1"); }
    QString position(const QString& part, const QString& whole) const override;
    bool hasLooseColumns() const override { return true; }
    QString isTrue() const override;
    QString columnSearch() const override;
    QStringList columnTypes(Enumerations::DataType kind) const override;
    QString lastTime() const override;
    const SchemaDialect& schemaDialect() const override;
    bool mayPass(const QString& reason) const override { return reason.contains(QLatin1String("locked")); }

protected:
    using Backend::Backend;

    bool drives(const QSqlDriver& driver) const override;
    bool tellsUnavailable(const QSqlError& error) const override;
};

} // namespace DataAccess::Database
