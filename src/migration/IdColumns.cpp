#include "migration/IdColumns.h"

namespace DataAccess::Manager {

namespace {

/// @p columns are those of the references, separated by blanks.
IdColumns entity(const char* table, const char* columns = "")
{
    return {QLatin1String(table),
            QStringLiteral("id"),
            QString::fromLatin1(columns).split(QLatin1Char(' '), Qt::SkipEmptyParts),
            {},
            {}};
}

IdColumns withoutIds(const char* table, const char* columns)
{
    IdColumns result = entity(table, columns);
    result.key.clear();
    return result;
}

IdColumns route()
{
    IdColumns result = entity("ce_route", "cable");
    result.list = QStringLiteral("points");
    return result;
}

IdColumns file()
{
    IdColumns result = entity("pd_file", "report");
    result.content = QStringLiteral("data");
    return result;
}

IdColumns taskEvaluation()
{
    IdColumns result = entity("pd_evaluation");
    result.key = QStringLiteral("taskid");
    return result;
}

} // namespace

const QVector<IdColumns>& IdColumns::all()
{
    static const QVector<IdColumns> tables = {
        entity("ce_station", "point"),
        entity("ce_point"),
        route(),
        entity("ce_phase", "cable"),
        entity("ce_owner"),
        entity("ce_switchgear"),
        entity("ce_termination"),
        entity("ce_segmenttype"),
        entity("ce_insulation"),
        entity("ce_segment", "phase point detail"),
        entity("ce_segment_detail", "insulation type"),
        entity("ce_cable", "stationa stationb terminationa terminationb switchgeara switchgearb route owner"),
        withoutIds("evaluation", "tid cid"),
        entity("qor_rating", "tid cid"),
        withoutIds("cablebook_measures", "cableid stationid"),
        file(),
        entity("pd_task", "cable station"),
        entity("pd_report", "task"),
        entity("pd_mapping", "report"),
        withoutIds("pd_report_mapping", "reportid"),
        withoutIds("pd_filter", "reportid"),
        withoutIds("pd_iec", "reportid"),
        taskEvaluation(),
        entity("pd_mapping_event", "report_id"),
        entity("pd_iec_overview", "report_id"),
        entity("pd_summary", "report_id"),
        entity("pd_task_info", "report_id"),
        entity("pd_lbdiagram", "report_id"),
    };
    return tables;
}

} // namespace DataAccess::Manager
