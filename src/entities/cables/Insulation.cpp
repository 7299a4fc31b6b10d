#include "entities/cables/Insulation.h"

namespace Cables::Entities {

using QOR::Entities::toJsonValue;

Interfaces::IInsulation::~IInsulation() = default;

Insulation::~Insulation() = default;

QJsonObject Insulation::toJson() const
{
    QJsonObject json = NamedEntity::toJson();
    json.insert(QLatin1String("velocity"), toJsonValue(m_velocity));
    return json;
}

} // namespace Cables::Entities
