#include "database/QtRowWriter.h"

#include "database/IDatabase.h"

#include <utility>

namespace DataAccess {

Interfaces::IRowWriter::~IRowWriter() = default;

bool Interfaces::IRowWriter::touchedRow() const
{
    return true;
}

namespace Database {

QtRowWriter::QtRowWriter(Interfaces::IDatabase& db, const QSqlQuery& query, std::function<void()> written)
    : m_db(db)
    , m_query(query)
    , m_values(db.Converter(m_query))
    , m_written(std::move(written))
{}

Interfaces::IValueConverter& QtRowWriter::values()
{
    return *m_values;
}

void QtRowWriter::run()
{
    m_db.Exec(m_query);
    m_written();
}

void QtRowWriter::finish()
{}

bool QtRowWriter::touchedRow() const
{
    return m_query.numRowsAffected() != 0;
}

} // namespace Database
} // namespace DataAccess
