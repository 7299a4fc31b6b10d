#pragma once

#include "database/IRowReader.h"
#include "database/IRowWriter.h"

#include <QSqlQuery>

#include <functional>
#include <memory>

namespace DataAccess::Interfaces {
class IDatabase;
}

namespace DataAccess::Database {

/// Reads rows through Qt SQL alone, from any driver.
class QtRowReader final : public Interfaces::IRowReader
{
public:
    /// Reads the result of @p query, which @p db has run.
    QtRowReader(Interfaces::IDatabase& db, const QSqlQuery& query);

    bool next() override;
    const Interfaces::IValueConverter& row() const override;
    QString error() const override;
    bool isUnavailable() const override;

private:
    QSqlQuery m_query;
    std::shared_ptr<Interfaces::IValueConverter> m_row;
};

/// Writes rows through Qt SQL alone, to any driver, one after the other.
class QtRowWriter final : public Interfaces::IRowWriter
{
public:
    /// Runs @p query, which is prepared, on @p db, and calls @p written after each row.
    QtRowWriter(Interfaces::IDatabase& db, const QSqlQuery& query, std::function<void()> written);

    Interfaces::IValueConverter& values() override;
    void run() override;
    void finish() override;
    bool touchedRow() const override;

private:
    Interfaces::IDatabase& m_db;
    QSqlQuery m_query;
    std::shared_ptr<Interfaces::IValueConverter> m_values;
    std::function<void()> m_written;
};

} // namespace DataAccess::Database
