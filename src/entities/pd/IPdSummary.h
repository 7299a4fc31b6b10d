#pragma once

#include "entities/pd/IPdReportPart.h"

namespace PD::Entities::Interfaces {

/// Which measurements the task of a report has.
class PD_EXPORT IPdSummary : public IPdReportPart
{
public:
    ~IPdSummary() override = default;

    /// The inception voltage was measured.
    virtual bool pdivState() const = 0;
    virtual void setPdivState(bool state) = 0;

    /// The extinction voltage was measured.
    virtual bool pdevState() const = 0;
    virtual void setPdevState(bool state) = 0;

    /// The ground noise was measured.
    virtual bool noiseState() const = 0;
    virtual void setNoiseState(bool state) = 0;

    /// There is measurement data.
    virtual bool dataState() const = 0;
    virtual void setDataState(bool state) = 0;

    /// The column `vwd`; its meaning is the application's.
    virtual bool vwdState() const = 0;
    virtual void setVwdState(bool state) = 0;

    /// Tested with positive damped AC voltage.
    virtual bool dacPosState() const = 0;
    virtual void setDacPosState(bool state) = 0;

    /// Tested with negative damped AC voltage.
    virtual bool dacNegState() const = 0;
    virtual void setDacNegState(bool state) = 0;

    /// Tested with cosine-rectangular voltage of very low frequency.
    virtual bool vlfCrState() const = 0;
    virtual void setVlfCrState(bool state) = 0;

    /// Tested with sinusoidal voltage of very low frequency.
    virtual bool vlfSinState() const = 0;
    virtual void setVlfSinState(bool state) = 0;

    /// Highest voltage set on the source during the task, volts.
    virtual double maxAppliedVoltage() const = 0;
    virtual void setMaxAppliedVoltage(double voltage) = 0;
};

} // namespace PD::Entities::Interfaces
