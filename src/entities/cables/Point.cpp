#include "entities/cables/Point.h"

namespace Cables::Entities {

Interfaces::IPoint::~IPoint() = default;

Point::~Point() = default;

QJsonObject Point::toJson() const
{
    QJsonObject json = NetworkEntity::toJson();
    json.insert(QLatin1String("index"), qint64(m_index));
    json.insert(QLatin1String("latitude"), toJsonValue(m_latitude));
    json.insert(QLatin1String("longitude"), toJsonValue(m_longitude));
    return json;
}

} // namespace Cables::Entities
