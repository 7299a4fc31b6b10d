#include "entities/lb/CablebookMeasure.h"

#include "entities/qor/QorUuidHelpers.h"

namespace LB::Entities {

Interfaces::ICablebookMeasure::~ICablebookMeasure() = default;

void CablebookMeasure::SetMeasureId(int id)
{
    if (Id().isNull())
        SetId(QOR::Entities::QorUuidHelpers::uuidFromInt(id));
    assign(m_measureId, id);
}

QJsonObject CablebookMeasure::toJson() const
{
    using QOR::Entities::toJsonValue;
    QJsonObject json = StoredEntity::toJson();
    json.insert(QLatin1String("measureId"), m_measureId);
    json.insert(QLatin1String("cableId"), toJsonValue(m_cableId));
    json.insert(QLatin1String("stationId"), toJsonValue(m_stationId));
    json.insert(QLatin1String("importDate"), toJsonValue(m_importDate));
    json.insert(QLatin1String("lastEditDate"), toJsonValue(m_lastEditDate));
    return json;
}

} // namespace LB::Entities
