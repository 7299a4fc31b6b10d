#include "database/IDatabase.h"

#include "database/backends/Backend.h"
#include "database/private/QtRows.h"
#include "database/private/StatementError.h"

#include <utility>

namespace DataAccess::Interfaces {

IDatabase::~IDatabase() = default;

void IDatabase::BeginJob()
{}

void IDatabase::EndJob()
{}

QString IDatabase::OpenError() const
{
    return {};
}

QSqlQuery& IDatabase::PreparedQuery(const QString& statement)
{
    QSqlQuery& query = Query();
    query.prepare(statement);
    return query;
}

std::unique_ptr<IRowReader> IDatabase::Read(const QString& sql)
{
    return std::make_unique<Database::QtRowReader>(*this, Exec(sql));
}

std::unique_ptr<IRowWriter> IDatabase::Write(const QString& statement, std::function<void()> written)
{
    QSqlQuery& query = Query();
    if (!query.prepare(statement))
        throw Database::failureOf(query);
    // A copy of its own: the connection's query is free for others.
    return std::make_unique<Database::QtRowWriter>(*this, query, std::move(written));
}

Database::Transaction IDatabase::WriteTransaction()
{
    return Transaction();
}

QSqlQuery IDatabase::SelectForUpdate(const QString& select)
{
    return Exec(Database::Backend::of(*this).selectForUpdate(select));
}

} // namespace DataAccess::Interfaces
