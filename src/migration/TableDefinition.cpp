#include "migration/TableDefinition.h"

#include "database/IValueConverter.h"

#include <algorithm>

namespace DataAccess::Manager {

namespace {

Column column(const char* name, Enumerations::DataType kind, unsigned int size, const char* comment)
{
    return {QString::fromLatin1(name), kind, size, {}, comment == nullptr ? QString() : QString::fromUtf8(comment)};
}

/// The table that a clause "... REFERENCES table(column) ..." leads to; empty for another clause.
QString referencedTable(const QString& clause)
{
    return clause.section(QStringLiteral("REFERENCES "), 1, 1).section(QLatin1Char('('), 0, 0);
}

} // namespace

Column Columns::text(const char* name, const char* comment)
{
    return column(name, Enumerations::Text, 0, comment);
}

Column Columns::integer(const char* name, unsigned int size, const char* comment)
{
    return column(name, Enumerations::Integer, size, comment);
}

Column Columns::numeric(const char* name, const char* comment)
{
    return column(name, Enumerations::Numeric, 0, comment);
}

Column Columns::boolean(const char* name, const char* comment)
{
    return column(name, Enumerations::Boolean, 0, comment);
}

Column Columns::timeStamp(const char* name, const char* comment)
{
    return column(name, Enumerations::TimeStamp, 0, comment);
}

Column Columns::date(const char* name, const char* comment)
{
    return column(name, Enumerations::Date, 0, comment);
}

Column Columns::bytes(const char* name, const char* comment)
{
    return column(name, Enumerations::ByteArray, 0, comment);
}

TableDefinition TableDefinition::with(const Column& column, const char* before) const
{
    TableDefinition table = *this;
    const auto isNext = [before](const Column& next) { return next.name == QLatin1String(before); };
    table.columns.insert(std::find_if(table.columns.begin(), table.columns.end(), isNext), column);
    return table;
}

TableDefinition TableDefinition::workTable(const QString& workName) const
{
    return {workName, columns, constraints, true};
}

QString TableDefinition::columnList() const
{
    QStringList names;
    for (const Column& column : columns)
        names.append(column.name);
    return names.join(QStringLiteral(", "));
}

QStringList TableDefinition::removeReferencesExceptTo(const QStringList& tables)
{
    QStringList removed;
    const auto isDangling = [&](const QString& clause) {
        const QString table = referencedTable(clause);
        return !table.isEmpty() && !tables.contains(table);
    };
    for (Column& column : columns) {
        if (isDangling(column.suffix)) {
            removed.append(column.suffix);
            column.suffix.clear();
        }
    }
    for (int i = constraints.size() - 1; i >= 0; --i) {
        if (isDangling(constraints.at(i)))
            removed.append(constraints.takeAt(i));
    }
    return removed;
}

QStringList TableDefinition::statementParts(const Interfaces::IValueConverter& converter) const
{
    QStringList parts{
        (temporary ? QStringLiteral("CREATE TEMPORARY TABLE \"%1\" (") : QStringLiteral("CREATE TABLE \"%1\" ("))
            .arg(name)};
    for (const Column& column : columns) {
        parts << QStringLiteral("\"%1\" %2").arg(column.name, converter.type(column.kind, column.size));
        if (!column.suffix.isEmpty())
            parts << column.suffix;
        if (&column != &columns.last() || !constraints.isEmpty())
            parts << QStringLiteral(",");
        if (!column.comment.isNull())
            parts << QStringLiteral("-- %1\n").arg(column.comment);
    }
    parts << constraints.join(QStringLiteral(", ")) << QStringLiteral(");");
    return parts;
}

} // namespace DataAccess::Manager
