#include "entities/pd/PdIecOverview.h"

#include "entities/pd/ChargeMap.h"
#include "entities/pd/StoredText.h"

namespace PD::Entities {

Interfaces::IPdIecOverview::~IPdIecOverview() = default;

QJsonObject PdIecOverview::maxCharges() const
{
    return ChargeMap::toJson(m_maxCharges);
}

void PdIecOverview::setMaxCharges(const QMap<double, double>& charges)
{
    assign(m_maxCharges, storedText<ChargeMap>(m_maxCharges, charges));
}

double PdIecOverview::maxChargeAtVoltage(double voltage) const
{
    return ChargeMap::chargeAt(m_maxCharges, voltage);
}

QJsonObject PdIecOverview::medCharges() const
{
    return ChargeMap::toJson(m_medCharges);
}

void PdIecOverview::setMedCharges(const QMap<double, double>& charges)
{
    assign(m_medCharges, storedText<ChargeMap>(m_medCharges, charges));
}

double PdIecOverview::medChargeAtVoltage(double voltage) const
{
    return ChargeMap::chargeAt(m_medCharges, voltage);
}

QJsonObject PdIecOverview::toJson() const
{
    using QOR::Entities::toJsonValue;
    QJsonObject json = PdReportPart::toJson();
    json.insert(QLatin1String("phaseIndex"), m_phaseIndex);
    json.insert(QLatin1String("groundNoise"), toJsonValue(m_groundNoise));
    json.insert(QLatin1String("sensitivityLevel"), toJsonValue(m_sensitivityLevel));
    json.insert(QLatin1String("frequency"), toJsonValue(m_frequency));
    json.insert(QLatin1String("pdivVoltage"), toJsonValue(m_pdivVoltage));
    json.insert(QLatin1String("pdevVoltage"), toJsonValue(m_pdevVoltage));
    json.insert(QLatin1String("pdivMaxCharge"), toJsonValue(m_pdivMaxCharge));
    json.insert(QLatin1String("maxCharges"), maxCharges());
    json.insert(QLatin1String("medCharges"), medCharges());
    return json;
}

} // namespace PD::Entities
