#include "entities/pd/PdLbDiagram.h"

namespace PD::Entities {

Interfaces::IPdLbDiagram::~IPdLbDiagram() = default;

QJsonObject PdLbDiagram::toJson() const
{
    using QOR::Entities::toJsonValue;
    QJsonObject json = PdReportPart::toJson();
    json.insert(QLatin1String("phase1Visible"), m_phase1Visible);
    json.insert(QLatin1String("phase2Visible"), m_phase2Visible);
    json.insert(QLatin1String("phase3Visible"), m_phase3Visible);
    json.insert(QLatin1String("filterClass"), static_cast<qint64>(m_filterClass));
    json.insert(QLatin1String("filterVoltageMin"), toJsonValue(m_filterVoltageMin));
    json.insert(QLatin1String("filterVoltageMax"), toJsonValue(m_filterVoltageMax));
    return json;
}

} // namespace PD::Entities
