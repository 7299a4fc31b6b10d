#pragma once

#include "entities/pd/IPdReportPart.h"

#include <QDateTime>
#include <QString>

namespace PD::Entities::Interfaces {

/// What the task of a report was measured with.
class PD_EXPORT IPdTaskInfo : public IPdReportPart
{
public:
    ~IPdTaskInfo() override = default;

    /// Version of the application that created the task.
    virtual const QString& softwareVersion() const = 0;
    virtual void setSoftwareVersion(const QString& version) = 0;

    /// Description of the kind of test system.
    virtual const QString& systemType() const = 0;
    virtual void setSystemType(const QString& type) = 0;

    /// Serial number of the test system.
    virtual const QString& serialNumber() const = 0;
    virtual void setSerialNumber(const QString& number) = 0;

    /// When the test system was last calibrated.
    virtual const QDateTime& calibrationDate() const = 0;
    virtual void setCalibrationDate(const QDateTime& date) = 0;
};

} // namespace PD::Entities::Interfaces
