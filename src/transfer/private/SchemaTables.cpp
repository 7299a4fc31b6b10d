#include "transfer/private/SchemaTables.h"

#include "migration/MigrationModule.h"

#include <QHash>

#include <algorithm>

namespace DataAccess::Transfer {

using Manager::TableDefinition;

namespace {

/// The current layouts, in the order in which dumps and copies have the tables; those that are not named come last.
QVector<TableDefinition> definitions()
{
    QStringList names =
        QStringLiteral("ce_point ce_route ce_phase ce_owner ce_switchgear ce_termination ce_segmenttype ce_insulation "
                       "ce_station ce_segment_detail ce_cable ce_segment evaluation qor_rating cablebook_measures "
                       "pd_task pd_report pd_file")
            .split(QLatin1Char(' '));
    QHash<QString, TableDefinition> current;
    for (const Manager::MigrationModule* const module : Manager::migrationModules()) {
        for (const Manager::MigrationStep& step : module->steps) {
            for (const TableDefinition& layout : step.layouts) {
                names.append(layout.name);
                current.insert(layout.name, layout);
            }
        }
    }
    names.removeDuplicates();
    QVector<TableDefinition> tables;
    for (const QString& name : qAsConst(names))
        tables.append(current.value(name));
    return tables;
}

QVector<SchemaReference> referencesOf(const QString& table)
{
    struct Line
    {
        const char* table;
        const char* column;
        const char* target;
    };
    static constexpr Line lines[] = {
        {"ce_station", "point", "ce_point"},
        {"ce_route", "cable", "ce_cable"},
        {"ce_route", "points", "ce_point"},
        {"ce_phase", "cable", "ce_cable"},
        {"ce_segment", "phase", "ce_phase"},
        {"ce_segment", "point", "ce_point"},
        {"ce_segment", "detail", "ce_segment_detail"},
        {"ce_segment_detail", "insulation", "ce_insulation"},
        {"ce_segment_detail", "type", "ce_segmenttype"},
        {"ce_cable", "stationa", "ce_station"},
        {"ce_cable", "stationb", "ce_station"},
        {"ce_cable", "terminationa", "ce_termination"},
        {"ce_cable", "terminationb", "ce_termination"},
        {"ce_cable", "switchgeara", "ce_switchgear"},
        {"ce_cable", "switchgearb", "ce_switchgear"},
        {"ce_cable", "route", "ce_route"},
        {"ce_cable", "owner", "ce_owner"},
        {"qor_rating", "cid", "ce_cable"},
        {"cablebook_measures", "cableid", "ce_cable"},
        {"cablebook_measures", "stationid", "ce_station"},
        {"pd_file", "report", "pd_report"},
        {"pd_report", "task", "pd_task"},
        {"pd_mapping", "report", "pd_report"},
        {"pd_report_mapping", "reportid", "pd_report"},
        {"pd_filter", "reportid", "pd_report"},
        {"pd_iec", "reportid", "pd_report"},
        {"pd_evaluation", "taskid", "pd_task"},
        {"pd_mapping_event", "report_id", "pd_report"},
        {"pd_iec_overview", "report_id", "pd_report"},
        {"pd_summary", "report_id", "pd_report"},
        {"pd_task_info", "report_id", "pd_report"},
        {"pd_lbdiagram", "report_id", "pd_report"},
    };
    QVector<SchemaReference> references;
    for (const Line& line : lines) {
        if (table == QLatin1String(line.table))
            references.append({QString::fromLatin1(line.column), QString::fromLatin1(line.target),
                               qstrcmp(line.column, "points") == 0});
    }
    return references;
}

SchemaTable describe(const TableDefinition& definition)
{
    SchemaTable table{definition.name, {}, {}, referencesOf(definition.name)};
    for (const Manager::Column& column : definition.columns) {
        const bool isImage = definition.name == QLatin1String("ce_station") && column.name == QLatin1String("image");
        table.columns.append({column.name, column.kind, isImage});
    }
    if (!definition.constraints.isEmpty())
        table.key = table.columns.front().name;
    return table;
}

} // namespace

bool SchemaTable::has(const QString& column) const
{
    return std::any_of(columns.begin(), columns.end(), [&](const SchemaColumn& one) { return one.name == column; });
}

QString SchemaTable::columnList() const
{
    QStringList names;
    for (const SchemaColumn& column : columns)
        names.append(quoted(column.name));
    return names.join(QLatin1String(", "));
}

bool SchemaTable::hasBytes() const
{
    return std::any_of(columns.begin(), columns.end(),
                       [](const SchemaColumn& column) { return column.kind == Enumerations::ByteArray; });
}

bool SchemaTable::hasUuid() const
{
    return !key.isEmpty() && columns.front().kind == Enumerations::Text;
}

const QVector<SchemaTable>& schemaTables()
{
    static const QVector<SchemaTable> tables = [] {
        QVector<SchemaTable> all;
        for (const TableDefinition& definition : definitions())
            all.append(describe(definition));
        return all;
    }();
    return tables;
}

const SchemaTable* schemaTable(const QString& name)
{
    for (const SchemaTable& table : schemaTables()) {
        if (table.name == name)
            return &table;
    }
    return nullptr;
}

} // namespace DataAccess::Transfer
