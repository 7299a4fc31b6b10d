#include "migration/StepDescription.h"

namespace DataAccess::Manager {

namespace {

QStringList names(const char* list)
{
    return QString::fromLatin1(list).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

StepDescription step(const char* feature, quint32 version, const char* name, const char* text,
                     const char* discards = "", const char* rewrites = "")
{
    return {QString::fromLatin1(feature), version,         QString::fromLatin1(name),
            QString::fromLatin1(text),    names(discards), names(rewrites)};
}

} // namespace

const QVector<StepDescription>& stepDescriptions()
{
    constexpr const char* cables = "CablesVersion";
    constexpr const char* pd = "PdVersion";
    static const QVector<StepDescription> all = {
        step(cables, 1, "Cables_01", "creates the tables of the cable network; those without a version are discarded",
             "ce_station ce_point ce_route ce_phase ce_owner ce_termination ce_switchgear ce_segmenttype ce_isolation "
             "ce_segment ce_cables ce_cable ce_insulation"),
        step(cables, 2, "Cables_02",
             "stations get an image, segments a detail each, cables a type; kilovolts become volts", "",
             "ce_station ce_segment ce_cable"),
        step(cables, 3, "Cables_03", "segments get a date of installation", "", "ce_segment"),
        step(cables, 4, "Cables_04",
             "segments of one insulation share its default detail; details and insulations are written anew later",
             "ce_segment_detail ce_insulation", "ce_segment"),
        step(cables, 5, "Evaluation_01", "creates the table of evaluations"),
        step(cables, 6, "Evaluation_02", "creates the table of ratings and moves the evaluations there", "",
             "evaluation"),
        step(cables, 7, "Cables_05", "cables get an importance; creates the links to the cable book", "", "ce_cable"),
        step(cables, 8, "Cables_06", "deletes details of cable sections that no segment uses", "ce_segment_detail"),
        step(cables, 9, "Cables_07", "deletes switchgear that no cable uses", "ce_switchgear"),
        step(pd, 1, "Pd_01", "creates the tables of files, tasks, reports and mappings"),
        step(pd, 2, "Pd_02", "creates the tables of filters and overviews"),
        step(pd, 3, "Pd_03", "creates the table of evaluations"),
        step(pd, 4, "Pd_04", "creates the tables of mapping events, overviews and summaries"),
        step(pd, 5, "Pd_05", "overviews get a sensitivity level", "", "pd_iec_overview"),
        step(pd, 6, "Pd_06", "creates the table of the particulars of tasks"),
        step(pd, 7, "Pd_07", "summaries get the highest voltage applied", "", "pd_summary"),
        step(pd, 8, "Pd_08", "creates the table of diagram settings"),
    };
    return all;
}

} // namespace DataAccess::Manager
