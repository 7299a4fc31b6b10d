#pragma once

#include "entities/pd/IPdIecOverview.h"
#include "entities/pd/PDExport.h"
#include "entities/pd/PdReportPart.h"

#include <limits>

namespace PD::Entities {

/// Results of one phase of a report; table `pd_iec_overview`.
class PD_EXPORT PdIecOverview : public PdReportPart<Interfaces::IPdIecOverview>
{
public:
    int phaseIndex() const override { return m_phaseIndex; }
    void setPhaseIndex(int index) override { assign(m_phaseIndex, index); }
    double groundNoise() const override { return m_groundNoise; }
    void setGroundNoise(double charge) override { assign(m_groundNoise, charge); }
    double sensitivityLevel() const override { return m_sensitivityLevel; }
    void setSensitivityLevel(double charge) override { assign(m_sensitivityLevel, charge); }
    double frequency() const override { return m_frequency; }
    void setFrequency(double frequency) override { assign(m_frequency, frequency); }
    double pdivVoltage() const override { return m_pdivVoltage; }
    void setPdivVoltage(double voltage) override { assign(m_pdivVoltage, voltage); }
    double pdevVoltage() const override { return m_pdevVoltage; }
    void setPdevVoltage(double voltage) override { assign(m_pdevVoltage, voltage); }
    double pdivMaxCharge() const override { return m_pdivMaxCharge; }
    void setPdivMaxCharge(double charge) override { assign(m_pdivMaxCharge, charge); }

    QJsonObject maxCharges() const override;
    void setMaxCharges(const QMap<double, double>& charges) override;
    void setMaxCharges(const QString& text) override { assign(m_maxCharges, text); }
    double maxChargeAtVoltage(double voltage) const override;
    QJsonObject medCharges() const override;
    void setMedCharges(const QMap<double, double>& charges) override;
    void setMedCharges(const QString& text) override { assign(m_medCharges, text); }
    double medChargeAtVoltage(double voltage) const override;

    /// The charges in the text form to store: ChargeMap's, or another text that was read and still stands for the map.
    const QString& maxChargesText() const { return m_maxCharges; }
    const QString& medChargesText() const { return m_medCharges; }

    QJsonObject toJson() const override;

private:
    double m_groundNoise = std::numeric_limits<double>::quiet_NaN();
    double m_sensitivityLevel = std::numeric_limits<double>::quiet_NaN();
    double m_frequency = std::numeric_limits<double>::quiet_NaN();
    double m_pdivVoltage = std::numeric_limits<double>::quiet_NaN();
    double m_pdevVoltage = std::numeric_limits<double>::quiet_NaN();
    double m_pdivMaxCharge = std::numeric_limits<double>::quiet_NaN();
    QString m_maxCharges;
    QString m_medCharges;
    int m_phaseIndex = 0;
};

} // namespace PD::Entities

template <>
inline constexpr auto QOR::Entities::properties<PD::Entities::PdIecOverview> = [] {
    using namespace PD::Entities;
    using E = PdIecOverview;
    return std::tuple{
        stored<&E::reportId, &E::setReportId>("reportId"),
        stored<&E::phaseIndex, &E::setPhaseIndex>("phaseIndex"),
        stored<&E::groundNoise, &E::setGroundNoise>("groundNoise"),
        stored<&E::sensitivityLevel, &E::setSensitivityLevel>("sensitivityLevel"),
        stored<&E::frequency, &E::setFrequency>("frequency"),
        stored<&E::pdivVoltage, &E::setPdivVoltage>("pdivVoltage"),
        stored<&E::pdevVoltage, &E::setPdevVoltage>("pdevVoltage"),
        stored<&E::pdivMaxCharge, &E::setPdivMaxCharge>("pdivMaxCharge"),
        stored<&E::maxChargesText, static_cast<void (E::*)(const QString&)>(&E::setMaxCharges), &E::maxCharges>(
            "maxCharges"),
        stored<&E::medChargesText, static_cast<void (E::*)(const QString&)>(&E::setMedCharges), &E::medCharges>(
            "medCharges")};
}();
