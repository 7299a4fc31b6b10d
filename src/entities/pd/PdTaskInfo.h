#pragma once

#include "entities/pd/IPdTaskInfo.h"
#include "entities/pd/PDExport.h"
#include "entities/pd/PdReportPart.h"

namespace PD::Entities {

/// What the task of a report was measured with; table `pd_task_info`.
class PD_EXPORT PdTaskInfo : public PdReportPart<Interfaces::IPdTaskInfo>
{
public:
    const QString& softwareVersion() const override { return m_softwareVersion; }
    void setSoftwareVersion(const QString& version) override { assign(m_softwareVersion, version); }
    const QString& systemType() const override { return m_systemType; }
    void setSystemType(const QString& type) override { assign(m_systemType, type); }
    const QString& serialNumber() const override { return m_serialNumber; }
    void setSerialNumber(const QString& number) override { assign(m_serialNumber, number); }
    const QDateTime& calibrationDate() const override { return m_calibrationDate; }
    void setCalibrationDate(const QDateTime& date) override { assign(m_calibrationDate, date); }

    QJsonObject toJson() const override;

private:
    QString m_softwareVersion;
    QString m_systemType;
    QString m_serialNumber;
    QDateTime m_calibrationDate;
};

} // namespace PD::Entities

template <>
inline constexpr auto QOR::Entities::properties<PD::Entities::PdTaskInfo> = [] {
    using namespace PD::Entities;
    using E = PdTaskInfo;
    return std::tuple{stored<&E::reportId, &E::setReportId>("reportId"),
                      stored<&E::softwareVersion, &E::setSoftwareVersion>("softwareVersion"),
                      stored<&E::systemType, &E::setSystemType>("systemType"),
                      stored<&E::serialNumber, &E::setSerialNumber>("serialNumber"),
                      stored<&E::calibrationDate, &E::setCalibrationDate>("calibrationDate")};
}();
