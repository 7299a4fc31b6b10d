#pragma once

#include "database/IRowReader.h"

#include <QSqlQuery>

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

} // namespace DataAccess::Database
