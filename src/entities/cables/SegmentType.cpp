#include "entities/cables/SegmentType.h"

namespace Cables::Entities {

Interfaces::ISegmentType::~ISegmentType() = default;

SegmentType::~SegmentType() = default;

QJsonObject SegmentType::toJson() const
{
    QJsonObject json = NamedEntity::toJson();
    json.insert(QLatin1String("isJoint"), m_isJoint);
    return json;
}

} // namespace Cables::Entities
