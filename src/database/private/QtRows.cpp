#include "database/private/QtRows.h"

#include "database/IDatabase.h"
#include "database/backends/Backend.h"
#include "database/private/StatementError.h"

#include <QSqlError>

#include <utility>

namespace DataAccess {

Interfaces::IRowReader::~IRowReader() = default;

bool Interfaces::IRowReader::isUnavailable() const
{
    return false;
}

Interfaces::IRowWriter::~IRowWriter() = default;

bool Interfaces::IRowWriter::touchedRow() const
{
    return true;
}

namespace Database {

QtRowReader::QtRowReader(Interfaces::IDatabase& db, const QSqlQuery& query)
    : m_query(query)
    , m_row(db.Converter(m_query))
{}

bool QtRowReader::next()
{
    return m_query.next();
}

const Interfaces::IValueConverter& QtRowReader::row() const
{
    return *m_row;
}

QString QtRowReader::error() const
{
    return m_query.lastError().isValid() ? Backend::errorText(m_query.lastError()) : QString();
}

bool QtRowReader::isUnavailable() const
{
    return failureOf(m_query).isUnavailable();
}

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
