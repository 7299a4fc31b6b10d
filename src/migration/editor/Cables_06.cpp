#include "database/LoggingCategories.h"
#include "migration/SchemaChange.h"
#include "migration/private/UnusedItems.h"

#include <QUuid>

namespace DataAccess::Manager::EditorSteps {

void Cables_06(SchemaChange& schema)
{
    const QString all =
        QStringLiteral("SELECT d.id,       d.name,        d.velocity,        d.insulation,       d.type FROM "
                       "ce_segment_detail AS d LEFT JOIN ce_segment AS s ON d.id=s.detail WHERE d.type "
                       "='{3308519a-3368-40fb-8371-9b4e39bf4cb2}'");
    const QUuid unknownDetail(QStringLiteral("{a9e63935-52ba-467d-8b82-d1ab111192f8}"));
    const int count =
        UnusedItems::remove(schema, UnusedItems::listIds(schema, all + QStringLiteral(" AND s.detail IS NULL")), all,
                            QStringLiteral("DELETE FROM ce_segment_detail WHERE id=?"), unknownDetail);
    qCDebug(lcMigrationEditor) << "Deleted" << count << "unused items in ce_segment_details";
}

} // namespace DataAccess::Manager::EditorSteps
