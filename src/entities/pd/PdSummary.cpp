#include "entities/pd/PdSummary.h"

namespace PD::Entities {

Interfaces::IPdSummary::~IPdSummary() = default;

QJsonObject PdSummary::toJson() const
{
    QJsonObject json = PdReportPart::toJson();
    json.insert(QLatin1String("pdivState"), m_pdivState);
    json.insert(QLatin1String("pdevState"), m_pdevState);
    json.insert(QLatin1String("noiseState"), m_noiseState);
    json.insert(QLatin1String("dataState"), m_dataState);
    json.insert(QLatin1String("vwdState"), m_vwdState);
    json.insert(QLatin1String("dacPosState"), m_dacPosState);
    json.insert(QLatin1String("dacNegState"), m_dacNegState);
    json.insert(QLatin1String("vlfCrState"), m_vlfCrState);
    json.insert(QLatin1String("vlfSinState"), m_vlfSinState);
    json.insert(QLatin1String("maxAppliedVoltage"), QOR::Entities::toJsonValue(m_maxAppliedVoltage));
    return json;
}

} // namespace PD::Entities
