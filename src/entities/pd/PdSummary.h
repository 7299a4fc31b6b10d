#pragma once

#include "entities/pd/IPdSummary.h"
#include "entities/pd/PDExport.h"
#include "entities/pd/PdReportPart.h"

#include <limits>

namespace PD::Entities {

/// Which measurements the task of a report has; table `pd_summary`.
class PD_EXPORT PdSummary : public PdReportPart<Interfaces::IPdSummary>
{
public:
    bool pdivState() const override { return m_pdivState; }
    void setPdivState(bool state) override { assign(m_pdivState, state); }
    bool pdevState() const override { return m_pdevState; }
    void setPdevState(bool state) override { assign(m_pdevState, state); }
    bool noiseState() const override { return m_noiseState; }
    void setNoiseState(bool state) override { assign(m_noiseState, state); }
    bool dataState() const override { return m_dataState; }
    void setDataState(bool state) override { assign(m_dataState, state); }
    bool vwdState() const override { return m_vwdState; }
    void setVwdState(bool state) override { assign(m_vwdState, state); }
    bool dacPosState() const override { return m_dacPosState; }
    void setDacPosState(bool state) override { assign(m_dacPosState, state); }
    bool dacNegState() const override { return m_dacNegState; }
    void setDacNegState(bool state) override { assign(m_dacNegState, state); }
    bool vlfCrState() const override { return m_vlfCrState; }
    void setVlfCrState(bool state) override { assign(m_vlfCrState, state); }
    bool vlfSinState() const override { return m_vlfSinState; }
    void setVlfSinState(bool state) override { assign(m_vlfSinState, state); }
    double maxAppliedVoltage() const override { return m_maxAppliedVoltage; }
    void setMaxAppliedVoltage(double voltage) override { assign(m_maxAppliedVoltage, voltage); }

    QJsonObject toJson() const override;

private:
    double m_maxAppliedVoltage = std::numeric_limits<double>::quiet_NaN();
    bool m_pdivState = false;
    bool m_pdevState = false;
    bool m_noiseState = false;
    bool m_dataState = false;
    bool m_vwdState = false;
    bool m_dacPosState = false;
    bool m_dacNegState = false;
    bool m_vlfCrState = false;
    bool m_vlfSinState = false;
};

} // namespace PD::Entities

template <>
inline constexpr auto QOR::Entities::properties<PD::Entities::PdSummary> = [] {
    using namespace PD::Entities;
    using E = PdSummary;
    return std::tuple{stored<&E::reportId, &E::setReportId>("reportId"),
                      stored<&E::pdivState, &E::setPdivState>("pdivState"),
                      stored<&E::pdevState, &E::setPdevState>("pdevState"),
                      stored<&E::noiseState, &E::setNoiseState>("noiseState"),
                      stored<&E::dataState, &E::setDataState>("dataState"),
                      stored<&E::vwdState, &E::setVwdState>("vwdState"),
                      stored<&E::dacPosState, &E::setDacPosState>("dacPosState"),
                      stored<&E::dacNegState, &E::setDacNegState>("dacNegState"),
                      stored<&E::vlfCrState, &E::setVlfCrState>("vlfCrState"),
                      stored<&E::vlfSinState, &E::setVlfSinState>("vlfSinState"),
                      stored<&E::maxAppliedVoltage, &E::setMaxAppliedVoltage>("maxAppliedVoltage")};
}();
