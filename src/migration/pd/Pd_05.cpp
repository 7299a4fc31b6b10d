#include "migration/MigrationStep.h"
#include "migration/pd/PdMigrationManager.h"
#include "migration/pd/PdTables.h"

namespace DataAccess::Manager {

bool PdMigrationManager::Pd_05()
{
    return runStep(Q_FUNC_INFO, [this](MigrationStep& step) {
        rebuild(
            step, PdTables::iecOverview04(), PdTables::iecOverview05(),
            {PdTables::iecOverviewWork(), QStringLiteral("SELECT id FROM pd_iec_overview"),
             QStringLiteral(
                 "INSERT INTO pd_iec_overview_old (id, report_id, phase, groundnoise, frequency, pdivvoltage, pdevvoltage, pdivmaxcharge, pdmaxcharges, pdmedcharges, snap, deleted, timestamp) SELECT i.id, i.report_id, i.phase, i.groundnoise, i.frequency, i.pdivvoltage, i.pdevvoltage, i.pdivmaxcharge, i.pdmaxcharges, i.pdmedcharges, i.snap, i.deleted, i.timestamp FROM pd_iec_overview AS i"),
             QStringLiteral(
                 "INSERT INTO pd_iec_overview (id, report_id, phase, groundnoise, sensitivity_level, frequency, pdivvoltage, pdevvoltage, pdivmaxcharge, pdmaxcharges, pdmedcharges, snap, deleted, timestamp) SELECT i.id, i.report_id, i.phase, i.groundnoise, 0.0, i.frequency, i.pdivvoltage, i.pdevvoltage, i.pdivmaxcharge, i.pdmaxcharges, i.pdmedcharges, i.snap, i.deleted, i.timestamp FROM pd_iec_overview_old AS i")});
    });
}

} // namespace DataAccess::Manager
