#pragma once

#include "entities/pd/IPdLbDiagram.h"
#include "entities/pd/PDExport.h"
#include "entities/pd/PdReportPart.h"

#include <limits>

namespace PD::Entities {

/// What the diagram of a report shows; table `pd_lbdiagram`. A new one shows no phase and all voltages.
class PD_EXPORT PdLbDiagram : public PdReportPart<Interfaces::IPdLbDiagram>
{
public:
    bool phase1Visible() const override { return m_phase1Visible; }
    void setPhase1Visible(bool visible) override { assign(m_phase1Visible, visible); }
    bool phase2Visible() const override { return m_phase2Visible; }
    void setPhase2Visible(bool visible) override { assign(m_phase2Visible, visible); }
    bool phase3Visible() const override { return m_phase3Visible; }
    void setPhase3Visible(bool visible) override { assign(m_phase3Visible, visible); }
    unsigned int filterClass() const override { return m_filterClass; }
    void setFilterClass(unsigned int filter) override { assign(m_filterClass, filter); }
    double filterVoltageMin() const override { return m_filterVoltageMin; }
    void setFilterVoltageMin(double voltage) override { assign(m_filterVoltageMin, voltage); }
    double filterVoltageMax() const override { return m_filterVoltageMax; }
    void setFilterVoltageMax(double voltage) override { assign(m_filterVoltageMax, voltage); }

    QJsonObject toJson() const override;

private:
    double m_filterVoltageMin = std::numeric_limits<double>::quiet_NaN();
    double m_filterVoltageMax = std::numeric_limits<double>::quiet_NaN();
    unsigned int m_filterClass = 0;
    bool m_phase1Visible = false;
    bool m_phase2Visible = false;
    bool m_phase3Visible = false;
};

} // namespace PD::Entities

template <>
inline constexpr auto QOR::Entities::properties<PD::Entities::PdLbDiagram> = [] {
    using namespace PD::Entities;
    using E = PdLbDiagram;
    return std::tuple{stored<&E::reportId, &E::setReportId>("reportId"),
                      stored<&E::phase1Visible, &E::setPhase1Visible>("phase1Visible"),
                      stored<&E::phase2Visible, &E::setPhase2Visible>("phase2Visible"),
                      stored<&E::phase3Visible, &E::setPhase3Visible>("phase3Visible"),
                      stored<&E::filterClass, &E::setFilterClass>("filterClass"),
                      stored<&E::filterVoltageMin, &E::setFilterVoltageMin>("filterVoltageMin"),
                      stored<&E::filterVoltageMax, &E::setFilterVoltageMax>("filterVoltageMax")};
}();
