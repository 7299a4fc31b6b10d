#include "entities/pd/PdTaskInfo.h"

namespace PD::Entities {

Interfaces::IPdTaskInfo::~IPdTaskInfo() = default;

QJsonObject PdTaskInfo::toJson() const
{
    using QOR::Entities::toJsonValue;
    QJsonObject json = PdReportPart::toJson();
    json.insert(QLatin1String("softwareVersion"), toJsonValue(m_softwareVersion));
    json.insert(QLatin1String("systemType"), toJsonValue(m_systemType));
    json.insert(QLatin1String("serialNumber"), toJsonValue(m_serialNumber));
    json.insert(QLatin1String("calibrationDate"), toJsonValue(m_calibrationDate));
    return json;
}

} // namespace PD::Entities
