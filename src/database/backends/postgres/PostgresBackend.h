#pragma once

#include "database/ValueConverter.h"
#include "database/backends/Backend.h"

#include <QPair>
#include <QSqlDriver>
#include <QVector>

namespace DataAccess::Converter {

/// The conversions for PostgreSQL.
class DATAACCESS_EXPORT PostgresValueConverter final : public ValueConverter
{
public:
    using ValueConverter::ValueConverter;
};

} // namespace DataAccess::Converter

namespace DataAccess::Database {

/// Databases of a PostgreSQL server.
class PostgresBackend final : public Backend
{
public:
    PostgresBackend();

    QString driver() const override { return QStringLiteral("QPSQL"); }
    bool isServer() const override { return true; }
    // A server that does not answer must not block the worker for the minutes that TCP would wait.
    QString connectOptions() const override { return QStringLiteral("connect_timeout=5"); }
    bool mayComeUp(const QSqlError& error) const override;

    bool hasTransaction(QSqlDatabase& connection) const override;
    bool canBegin(const QSqlDatabase& connection) const override;
    QString endWhileIdle(const QSqlDatabase& connection) const override;

    std::shared_ptr<Interfaces::IValueConverter> converter(QSqlQuery& query) const override;
    std::unique_ptr<Interfaces::IRowReader> reader(const QSqlDriver& driver, const QString& select) const override;
    std::unique_ptr<Interfaces::IRowWriter> writer(QSqlQuery& query, const QString& statement,
                                                   const std::function<void()>& written, Session& session,
                                                   const std::function<void()>& makeReady) const override;
    bool readsForwards() const override { return false; }

    QString tableCount() const override;
    QString nextId() const override { return QStringLiteral("SELECT nextval('%1_s')"); }
    QString sequenceCreation() const override { return QStringLiteral("CREATE SEQUENCE %1_s"); }
    const SchemaDialect& schemaDialect() const override;
    QString selectForUpdate(const QString& select) const override { return select + QLatin1String(" FOR UPDATE"); }
    QString byteOrder() const override { return QStringLiteral(" COLLATE \"C\""); }
    QString nullsFirst() const override { return QStringLiteral(" NULLS FIRST"); }
    QString snapshot() const override;
    QString cursorDeclaration() const override { return QStringLiteral("DECLARE %1 NO SCROLL CURSOR FOR "); }
    // Other programs may have locked a table, and are not waited for without end.
    QString bulkSettings() const override { return QStringLiteral("SET lock_timeout = '10s'"); }
    QString isTrue() const override;
    QString columnSearch() const override;
    QStringList columnTypes(Enumerations::DataType kind) const override;
    QString lastTime() const override;
    bool mayPass(const QString& reason) const override;

protected:
    bool drives(const QSqlDriver& driver) const override { return driver.dbmsType() == QSqlDriver::PostgreSQL; }
    QString textWithoutValues(const QSqlError& error) const override;
    bool tellsUnavailable(const QSqlError& error) const override;
};

/// What a connection address of PostgreSQL ("postgresql://user@host1,host2/db?sslmode=verify-full") says, keyword by
/// keyword. Throws std::invalid_argument, without the address in its text: it may hold a password.
DATAACCESS_EXPORT QVector<QPair<QString, QString>> parsePostgresAddress(const QString& address);

} // namespace DataAccess::Database
