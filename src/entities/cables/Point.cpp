#include "entities/cables/Point.h"

namespace Cables::Entities {

using QOR::Entities::toJsonValue;

Interfaces::IPoint::~IPoint() = default;

Point::~Point() = default;

QJsonObject Point::toJson() const
{
    QJsonObject json = StoredEntity::toJson();
    json.insert(QLatin1String("index"), qint64(m_index));
    json.insert(QLatin1String("latitude"), toJsonValue(m_latitude));
    json.insert(QLatin1String("longitude"), toJsonValue(m_longitude));
    return json;
}

} // namespace Cables::Entities
