#include "database/QtRowReader.h"

#include "database/IDatabase.h"
#include "database/StatementError.h"

#include <QSqlError>

namespace DataAccess {

Interfaces::IRowReader::~IRowReader() = default;

bool Interfaces::IRowReader::isUnavailable() const
{
    return false;
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
    return m_query.lastError().isValid() ? errorText(m_query.lastError()) : QString();
}

bool QtRowReader::isUnavailable() const
{
    return failureOf(m_query).isUnavailable();
}

} // namespace Database
} // namespace DataAccess
