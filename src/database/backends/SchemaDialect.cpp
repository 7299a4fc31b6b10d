#include "database/backends/SchemaDialect.h"

#include "database/IDatabase.h"
#include "database/StatementRunner.h"

#include <QDateTime>

namespace DataAccess::Database {

SchemaDialect::~SchemaDialect() = default;

void SchemaDialect::lockOthersOut(StatementRunner&) const
{}

void SchemaDialect::lockAgainstWriters(StatementRunner&, const QStringList&) const
{}

bool SchemaDialect::createSequence(StatementRunner& statements, const QString& table) const
{
    return statements.database().CreateSequence(table);
}

bool SchemaDialect::completeSequence(StatementRunner&, const QString&) const
{
    return true;
}

void SchemaDialect::revokeDefaultGrants(StatementRunner&, const QString&) const
{}

QVector<ForeignKey> SchemaDialect::foreignKeysOn(StatementRunner&, const QString&) const
{
    return {};
}

bool SchemaDialect::isPossible(StatementRunner&, const ForeignKey&) const
{
    return true;
}

QString SchemaDialect::unlessFarBehind(const QString&, const QString&, const QString& condition) const
{
    return condition;
}

QString SchemaDialect::freeTimeStamp(const std::function<bool(const QString&)>& isTaken)
{
    QDateTime time = QDateTime::currentDateTimeUtc();
    const auto text = [&] { return time.toString(QStringLiteral("yyyyMMdd'T'HHmmss")); };
    while (isTaken(text()))
        time = time.addSecs(1);
    return text();
}

} // namespace DataAccess::Database
