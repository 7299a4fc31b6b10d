#include "migration/private/PdChanges.h"

namespace DataAccess::Manager::PdSteps {

void Pd_07(SchemaChange& schema)
{
    PdChanges::rebuild(
        schema,
        {QStringLiteral("pd_summary"), QStringLiteral("Select id FROM pd_summary"),
         QStringLiteral(
             "INSERT INTO pd_summary_old (id, report_id, pdiv, pdev, groundnoise, data, vwd, dac_pos, dac_neg, vlf_cr, vlf_sin,snap, deleted, timestamp) SELECT i.id, i.report_id, i.pdiv, i.pdev, i.groundnoise, i.data, i.vwd, i.dac_pos, i.dac_neg, i.vlf_cr, i.vlf_sin,i.snap, i.deleted, i.timestamp FROM pd_summary AS i"),
         QStringLiteral(
             "INSERT INTO pd_summary (id, report_id, pdiv, pdev, groundnoise, data, vwd, dac_pos, dac_neg, vlf_cr, vlf_sin,snap, deleted, timestamp) SELECT i.id, i.report_id, i.pdiv, i.pdev, i.groundnoise, i.data, i.vwd, i.dac_pos, i.dac_neg, i.vlf_cr, i.vlf_sin,i.snap, i.deleted, i.timestamp FROM pd_summary_old AS i")});
}

} // namespace DataAccess::Manager::PdSteps
