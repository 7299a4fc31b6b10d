#include "migration/MigrationStep.h"
#include "migration/pd/PdMigrationManager.h"
#include "migration/pd/PdTables.h"

namespace DataAccess::Manager {

bool PdMigrationManager::Pd_07()
{
    return runStep(Q_FUNC_INFO, [this](MigrationStep& step) {
        rebuild(
            step, PdTables::summary04(), PdTables::summary07(),
            {PdTables::summaryWork(), QStringLiteral("Select id FROM pd_summary"),
             QStringLiteral(
                 "INSERT INTO pd_summary_old (id, report_id, pdiv, pdev, groundnoise, data, vwd, dac_pos, dac_neg, vlf_cr, vlf_sin,snap, deleted, timestamp) SELECT i.id, i.report_id, i.pdiv, i.pdev, i.groundnoise, i.data, i.vwd, i.dac_pos, i.dac_neg, i.vlf_cr, i.vlf_sin,i.snap, i.deleted, i.timestamp FROM pd_summary AS i"),
             QStringLiteral(
                 "INSERT INTO pd_summary (id, report_id, pdiv, pdev, groundnoise, data, vwd, dac_pos, dac_neg, vlf_cr, vlf_sin,snap, deleted, timestamp) SELECT i.id, i.report_id, i.pdiv, i.pdev, i.groundnoise, i.data, i.vwd, i.dac_pos, i.dac_neg, i.vlf_cr, i.vlf_sin,i.snap, i.deleted, i.timestamp FROM pd_summary_old AS i")});
    });
}

} // namespace DataAccess::Manager
