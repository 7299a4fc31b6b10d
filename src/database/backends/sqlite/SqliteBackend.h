#pragma once

#include "database/backends/SqliteFamily.h"

namespace DataAccess::Converter {

/// The conversions for SQLite 3.
class DATAACCESS_EXPORT SQLite3ValueConverter : public SqliteValueConverter
{
public:
    using SqliteValueConverter::SqliteValueConverter;
};

} // namespace DataAccess::Converter

namespace DataAccess::Database {

/// Databases of SQLite 3.
class SqliteBackend final : public SqliteFamily
{
public:
    SqliteBackend();

    QString driver() const override;
    QString readOnlyOptions() const override;
    QSqlError prepareOpening(const QString& name, OpenFile& file) const override;
    QSqlError probe(const QSqlDatabase& connection) const override;

    std::shared_ptr<Interfaces::IValueConverter> converter(QSqlQuery& query) const override;
    std::unique_ptr<Interfaces::IRowReader> reader(const QSqlDriver& driver, const QString& select) const override;
    std::unique_ptr<Interfaces::IRowWriter> writer(QSqlQuery& query, const QString& statement,
                                                   const std::function<void()>& written, Session& session,
                                                   const std::function<void()>& makeReady) const override;
    QString enlargeCache(Interfaces::IDatabase& db) const override;
    QString bulkSettings() const override;
};

} // namespace DataAccess::Database
