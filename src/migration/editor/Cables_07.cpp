#include "database/LoggingCategories.h"
#include "migration/SchemaChange.h"
#include "migration/private/UnusedItems.h"

#include <QSet>
#include <QUuid>

#include <algorithm>

namespace DataAccess::Manager::EditorSteps {

namespace {

/// The select lists switchgear at one end of a cable whose other end has none, too; that is in use.
QStringList unusedSwitchgear(SchemaChange& schema, const QString& all)
{
    QStringList ids =
        UnusedItems::listIds(schema, all + QStringLiteral(" WHERE c.switchgeara IS NULL OR c.switchgearb IS NULL"));
    QSet<QString> used;
    for (const QVariantList& cable : schema.rows(QStringLiteral("SELECT switchgeara, switchgearb FROM ce_cable"))) {
        for (const QVariant& id : cable)
            used.insert(id.toString());
    }
    ids.erase(std::remove_if(ids.begin(), ids.end(), [&](const QString& id) { return used.contains(id); }), ids.end());
    return ids;
}

} // namespace

void Cables_07(SchemaChange& schema)
{
    const QString all = QStringLiteral("SELECT s.id,        s.name FROM ce_switchgear AS s LEFT JOIN ce_cable AS c ON "
                                       "c.switchgeara=s.id OR c.switchgearb=s.id");
    const QUuid exempt(QStringLiteral("{016831D8-0D3A-4E30-B568-ECB848EC2A01}"));
    const int count = UnusedItems::remove(schema, unusedSwitchgear(schema, all), all,
                                          QStringLiteral("DELETE FROM ce_switchgear WHERE id=?"), exempt);
    qCDebug(lcMigrationEditor) << "Deleted" << count << "unused items in ce_switchgear";
}

} // namespace DataAccess::Manager::EditorSteps
