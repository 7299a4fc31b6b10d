#include "entities/cables/Station.h"

#include "entities/cables/IPoint.h"

namespace Cables::Entities {

Interfaces::IStation::~IStation() = default;

Station::~Station() = default;

void Station::SetPointId(const QUuid& id)
{
    assignReferenceId(m_point, id);
}

std::shared_ptr<Interfaces::IPoint> Station::Point() const
{
    return m_point.object();
}

void Station::SetPoint(std::shared_ptr<Interfaces::IPoint> point)
{
    assignReferenceObject(m_point, std::move(point));
}

QJsonObject Station::toJson() const
{
    QJsonObject json = NamedEntity::toJson();
    json.insert(QLatin1String("city"), toJsonValue(m_city));
    json.insert(QLatin1String("description"), toJsonValue(m_description));
    json.insert(QLatin1String("image"), toJsonValue(m_image));
    json.insert(QLatin1String("pointId"), toJsonValue(m_point.id()));
    return json;
}

} // namespace Cables::Entities
