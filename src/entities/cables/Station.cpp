#include "entities/cables/Station.h"

#include "entities/cables/IPoint.h"

#include <QBuffer>

namespace Cables::Entities {

using QOR::Entities::toJsonValue;

namespace {

QJsonValue pngJson(const QImage& image)
{
    if (image.isNull())
        return {};
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    return image.save(&buffer, "PNG") ? toJsonValue(png) : QJsonValue();
}

} // namespace

Interfaces::IStation::~IStation() = default;

Station::~Station() = default;

void Station::SetPointId(const QUuid& id)
{
    assignReferenceId(m_point, id);
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
    json.insert(QLatin1String("image"), pngJson(m_image));
    json.insert(QLatin1String("pointId"), toJsonValue(m_point.id()));
    return json;
}

} // namespace Cables::Entities
