#pragma once

#include "entities/pd/IPdReportPart.h"

#include <QMap>
#include <QString>

namespace PD::Entities::Interfaces {

/// Results of one phase of a report.
class PD_EXPORT IPdIecOverview : public IPdReportPart
{
public:
    ~IPdIecOverview() override = default;

    /// Number of the phase in its cable.
    virtual int phaseIndex() const = 0;
    virtual void setPhaseIndex(int index) = 0;

    /// Noise level of the measurement, coulombs.
    virtual double groundNoise() const = 0;
    virtual void setGroundNoise(double charge) = 0;

    /// Sensitivity level confirmed when the report was made, coulombs.
    virtual double sensitivityLevel() const = 0;
    virtual void setSensitivityLevel(double charge) = 0;

    /// Frequency of the test voltage, hertz.
    virtual double frequency() const = 0;
    virtual void setFrequency(double frequency) = 0;

    /// Voltage at which partial discharge sets in, volts.
    virtual double pdivVoltage() const = 0;
    virtual void setPdivVoltage(double voltage) = 0;

    /// Voltage at which partial discharge goes out, volts.
    virtual double pdevVoltage() const = 0;
    virtual void setPdevVoltage(double voltage) = 0;

    /// Highest charge at the inception voltage, coulombs.
    virtual double pdivMaxCharge() const = 0;
    virtual void setPdivMaxCharge(double charge) = 0;

    /**
     * Highest charge (coulombs) at each voltage level (volts), as the object that the text form describes: the voltage
     * is the key, the charge the value. Empty when the text is null or describes no such object.
     */
    virtual QJsonObject maxCharges() const = 0;
    /// Charge by voltage. While the text held means the same, it stays as it is.
    virtual void setMaxCharges(const QMap<double, double>& charges) = 0;
    /// The text form, kept as it is given whatever it holds.
    virtual void setMaxCharges(const QString& text) = 0;
    /// Charge at the level nearest to @p voltage within 1e-9 of its size, so that a level computed another way is still
    /// found; NaN when there is none.
    virtual double maxChargeAtVoltage(double voltage) const = 0;

    /// Median charge at each voltage level: as maxCharges().
    virtual QJsonObject medCharges() const = 0;
    virtual void setMedCharges(const QMap<double, double>& charges) = 0;
    virtual void setMedCharges(const QString& text) = 0;
    virtual double medChargeAtVoltage(double voltage) const = 0;
};

} // namespace PD::Entities::Interfaces
