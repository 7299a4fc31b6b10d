#include "migration/private/PdChanges.h"

namespace DataAccess::Manager::PdSteps {

void Pd_05(SchemaChange& schema)
{
    PdChanges::rebuild(
        schema,
        {QStringLiteral("pd_iec_overview"), QStringLiteral("SELECT id FROM pd_iec_overview"),
         QStringLiteral(
             "INSERT INTO pd_iec_overview_old (id, report_id, phase, groundnoise, frequency, pdivvoltage, pdevvoltage, pdivmaxcharge, pdmaxcharges, pdmedcharges, snap, deleted, timestamp) SELECT i.id, i.report_id, i.phase, i.groundnoise, i.frequency, i.pdivvoltage, i.pdevvoltage, i.pdivmaxcharge, i.pdmaxcharges, i.pdmedcharges, i.snap, i.deleted, i.timestamp FROM pd_iec_overview AS i"),
         QStringLiteral(
             "INSERT INTO pd_iec_overview (id, report_id, phase, groundnoise, sensitivity_level, frequency, pdivvoltage, pdevvoltage, pdivmaxcharge, pdmaxcharges, pdmedcharges, snap, deleted, timestamp) SELECT i.id, i.report_id, i.phase, i.groundnoise, 0.0, i.frequency, i.pdivvoltage, i.pdevvoltage, i.pdivmaxcharge, i.pdmaxcharges, i.pdmedcharges, i.snap, i.deleted, i.timestamp FROM pd_iec_overview_old AS i")});
}

} // namespace DataAccess::Manager::PdSteps
