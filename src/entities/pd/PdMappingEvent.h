#pragma once

#include "entities/pd/IPdMappingEvent.h"
#include "entities/pd/PDExport.h"
#include "entities/pd/PdReportPart.h"

#include <limits>

namespace PD::Entities {

/// One discharge that was located on the cable; table `pd_mapping_event`.
class PD_EXPORT PdMappingEvent : public PdReportPart<Interfaces::IPdMappingEvent>
{
public:
    double load() const override { return m_load; }
    void setLoad(double load) override { assign(m_load, load); }
    double voltage() const override { return m_voltage; }
    void setVoltage(double voltage) override { assign(m_voltage, voltage); }
    double position() const override { return m_position; }
    void setPosition(double position) override { assign(m_position, position); }
    int phaseIndex() const override { return m_phaseIndex; }
    void setPhaseIndex(int index) override { assign(m_phaseIndex, index); }
    int classification() const override { return m_classification; }
    void setClassification(int classification) override { assign(m_classification, classification); }
    int mode() const override { return m_mode; }
    void setMode(int mode) override { assign(m_mode, mode); }
    bool polarity() const override { return m_polarity; }
    void setPolarity(bool polarity) override { assign(m_polarity, polarity); }

    QJsonObject toJson() const override;

private:
    // There are millions of these in memory: the widest come first, so that no byte is lost between them.
    double m_load = std::numeric_limits<double>::quiet_NaN();
    double m_voltage = std::numeric_limits<double>::quiet_NaN();
    double m_position = std::numeric_limits<double>::quiet_NaN();
    int m_phaseIndex = 0;
    int m_classification = 0;
    int m_mode = 0;
    bool m_polarity = false;
};

} // namespace PD::Entities

template <>
inline constexpr auto QOR::Entities::properties<PD::Entities::PdMappingEvent> = [] {
    using namespace PD::Entities;
    using E = PdMappingEvent;
    return std::tuple{stored<&E::reportId, &E::setReportId>("reportId"),
                      stored<&E::load, &E::setLoad>("load"),
                      stored<&E::voltage, &E::setVoltage>("voltage"),
                      stored<&E::position, &E::setPosition>("position"),
                      stored<&E::phaseIndex, &E::setPhaseIndex>("phaseIndex"),
                      stored<&E::classification, &E::setClassification>("classification"),
                      stored<&E::mode, &E::setMode>("mode"),
                      stored<&E::polarity, &E::setPolarity>("polarity")};
}();
