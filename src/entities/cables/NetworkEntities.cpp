// The entities of the cable network that only hold values: each gives its properties as JSON.

#include "entities/cables/Insulation.h"
#include "entities/cables/Owner.h"
#include "entities/cables/Point.h"
#include "entities/cables/SegmentDetail.h"
#include "entities/cables/SegmentType.h"
#include "entities/cables/Station.h"
#include "entities/cables/Switchgear.h"
#include "entities/cables/Termination.h"

#include <QBuffer>

namespace Cables::Entities {

using QOR::Entities::propertiesToJson;

QJsonObject Insulation::toJson() const
{
    return propertiesToJson(*this);
}

QJsonObject Owner::toJson() const
{
    return propertiesToJson(*this);
}

QJsonObject SegmentType::toJson() const
{
    return propertiesToJson(*this);
}

QJsonObject Switchgear::toJson() const
{
    return propertiesToJson(*this);
}

QJsonObject Termination::toJson() const
{
    return propertiesToJson(*this);
}

QJsonObject Point::toJson() const
{
    return propertiesToJson(*this);
}

QJsonObject SegmentDetail::toJson() const
{
    return propertiesToJson(*this);
}

QJsonValue Station::imageJson() const
{
    if (m_image.isNull())
        return {};
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    return m_image.save(&buffer, "PNG") ? QOR::Entities::toJsonValue(png) : QJsonValue();
}

QJsonObject Station::toJson() const
{
    return propertiesToJson(*this);
}

} // namespace Cables::Entities
