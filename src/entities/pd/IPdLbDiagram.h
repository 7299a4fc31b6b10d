#pragma once

#include "entities/pd/IPdReportPart.h"

namespace PD::Entities::Interfaces {

/// What the diagram of a report shows.
class PD_EXPORT IPdLbDiagram : public IPdReportPart
{
public:
    ~IPdLbDiagram() override = default;

    /// Whether the phase is shown.
    virtual bool phase1Visible() const = 0;
    virtual void setPhase1Visible(bool visible) = 0;
    virtual bool phase2Visible() const = 0;
    virtual void setPhase2Visible(bool visible) = 0;
    virtual bool phase3Visible() const = 0;
    virtual void setPhase3Visible(bool visible) = 0;

    /// Classes of events to show, encoded by the application.
    virtual unsigned int filterClass() const = 0;
    virtual void setFilterClass(unsigned int filter) = 0;

    /// Lowest voltage of the events to show, volts; NaN for no limit.
    virtual double filterVoltageMin() const = 0;
    virtual void setFilterVoltageMin(double voltage) = 0;

    /// Highest voltage of the events to show, volts; NaN for no limit.
    virtual double filterVoltageMax() const = 0;
    virtual void setFilterVoltageMax(double voltage) = 0;
};

} // namespace PD::Entities::Interfaces
