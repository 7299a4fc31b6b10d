#include "migration/MigrationStep.h"
#include "migration/editor/EditorMigrationManager.h"
#include "migration/editor/EditorTables.h"

namespace DataAccess::Manager {

namespace {

/// The tables of a cable network without a version, among them two that have other names now.
bool isCableTable(const QString& table)
{
    static const QStringList names{
        QStringLiteral("ce_station"),    QStringLiteral("ce_point"),       QStringLiteral("ce_route"),
        QStringLiteral("ce_phase"),      QStringLiteral("ce_owner"),       QStringLiteral("ce_termination"),
        QStringLiteral("ce_switchgear"), QStringLiteral("ce_segmenttype"), QStringLiteral("ce_isolation"),
        QStringLiteral("ce_segment"),    QStringLiteral("ce_cables"),      QStringLiteral("ce_cable"),
        QStringLiteral("ce_insulation")};
    return names.contains(table, Qt::CaseInsensitive);
}

} // namespace

bool EditorMigrationManager::Cables_01()
{
    return runStep(Q_FUNC_INFO, [this](MigrationStep& step) {
        createVersionTables(step);
        for (const QString& table : step.tables()) {
            if (isCableTable(table))
                step.discard(table);
        }
        for (const TableDefinition& table : EditorTables::all01())
            createTable(step, table);
    });
}

} // namespace DataAccess::Manager
