#include "entities/lb/CablebookMeasure.h"

#include "entities/qor/QorUuidHelpers.h"

namespace LB::Entities {

namespace {

QJsonValue toJsonValue(const QUuid& id)
{
    return id.isNull() ? QJsonValue() : QJsonValue(id.toString());
}

QJsonValue toJsonValue(const QDateTime& time)
{
    return time.isValid() ? QJsonValue(time.toUTC().toString(Qt::ISODateWithMs)) : QJsonValue();
}

} // namespace

Interfaces::ICablebookMeasure::~ICablebookMeasure() = default;

void CablebookMeasure::SetMeasureId(int id)
{
    if (Id().isNull())
        SetId(QOR::Entities::QorUuidHelpers::uuidFromInt(id));
    assign(m_measureId, id);
}

QJsonObject CablebookMeasure::toJson() const
{
    using namespace QOR::Entities::Enumerations;
    QJsonObject json;
    json.insert(QLatin1String("id"), toJsonValue(Id()));
    json.insert(QLatin1String("measureId"), m_measureId);
    json.insert(QLatin1String("cableId"), toJsonValue(m_cableId));
    json.insert(QLatin1String("stationId"), toJsonValue(m_stationId));
    json.insert(QLatin1String("importDate"), toJsonValue(m_importDate));
    json.insert(QLatin1String("lastEditDate"), toJsonValue(m_lastEditDate));
    json.insert(QLatin1String("deleted"), EntityState() == Deleted);
    json.insert(QLatin1String("snap"), EntityState() == Snapshot);
    return json;
}

} // namespace LB::Entities
