#include "migration/SchemaChange.h"

namespace DataAccess::Manager::EditorSteps {

void Cables_05(SchemaChange& schema)
{
    const QString cable = QStringLiteral("ce_cable");
    const QString columns = schema.before(cable).columnList();
    schema.rebuild(cable, QStringLiteral("INSERT INTO ce_cable_tmp SELECT %1 FROM ce_cable").arg(columns),
                   QStringLiteral("INSERT INTO ce_cable SELECT %1, NULL FROM ce_cable_tmp").arg(columns));
    schema.createTable(schema.after(QStringLiteral("cablebook_measures")));
}

} // namespace DataAccess::Manager::EditorSteps
