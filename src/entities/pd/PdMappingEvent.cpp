#include "entities/pd/PdMappingEvent.h"

namespace PD::Entities {

Interfaces::IPdMappingEvent::~IPdMappingEvent() = default;

QJsonObject PdMappingEvent::toJson() const
{
    using QOR::Entities::toJsonValue;
    QJsonObject json = PdReportPart::toJson();
    json.insert(QLatin1String("load"), toJsonValue(m_load));
    json.insert(QLatin1String("voltage"), toJsonValue(m_voltage));
    json.insert(QLatin1String("position"), toJsonValue(m_position));
    json.insert(QLatin1String("phaseIndex"), m_phaseIndex);
    json.insert(QLatin1String("classification"), m_classification);
    json.insert(QLatin1String("mode"), m_mode);
    json.insert(QLatin1String("polarity"), m_polarity);
    return json;
}

} // namespace PD::Entities
