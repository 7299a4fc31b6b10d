#pragma once

#include "entities/pd/IPdReportPart.h"

namespace PD::Entities::Interfaces {

/// One discharge that was located on the cable.
class PD_EXPORT IPdMappingEvent : public IPdReportPart
{
public:
    ~IPdMappingEvent() override = default;

    /// Measured load, coulombs.
    virtual double load() const = 0;
    virtual void setLoad(double load) = 0;

    /// Voltage that the event was measured at, volts.
    virtual double voltage() const = 0;
    virtual void setVoltage(double voltage) = 0;

    /// Distance from the start of the cable, metres.
    virtual double position() const = 0;
    virtual void setPosition(double position) = 0;

    /// Number of the phase in its cable.
    virtual int phaseIndex() const = 0;
    virtual void setPhaseIndex(int index) = 0;

    /// Class that the event is shown as.
    virtual int classification() const = 0;
    virtual void setClassification(int classification) = 0;

    /// Kind of test voltage, numbered by the application.
    virtual int mode() const = 0;
    virtual void setMode(int mode) = 0;

    /// True for one polarity of the discharge, false for the other: which is which is the application's.
    virtual bool polarity() const = 0;
    virtual void setPolarity(bool polarity) = 0;
};

} // namespace PD::Entities::Interfaces
