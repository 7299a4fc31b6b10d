#pragma once

#include "entities/cables/ICable.h"
#include "entities/cables/IStation.h"
#include "entities/pd/IPdTask.h"
#include "entities/pd/PDExport.h"
#include "entities/qor/Children.h"
#include "entities/qor/Reference.h"
#include "entities/qor/StoredEntity.h"

#include <limits>

namespace Cables::Entities {
class Cable;
class Station;
} // namespace Cables::Entities

namespace PD::Entities {

/**
 * One partial-discharge test of a cable; table `pd_task`. Its reports can refer to it as an object only if a shared
 * pointer owns it; they do not keep it alive.
 */
class PD_EXPORT PdTask : public QOR::Entities::StoredEntity<Interfaces::IPdTask>,
                         public std::enable_shared_from_this<PdTask>
{
public:
    void SetId(const QUuid& id) override;

    const QUuid& CableId() const override { return m_cable.id(); }
    void SetCableId(const QUuid& id) override { assignReferenceId(m_cable, id); }
    std::shared_ptr<Cables::Entities::Interfaces::ICable> Cable() const override { return m_cable.object(); }
    void SetCable(const std::shared_ptr<Cables::Entities::Interfaces::ICable>& cable) override
    {
        assignReferenceObject(m_cable, cable);
    }
    /// Points at the cable of CableId(), or at none: nothing that is stored changes.
    void LinkCable(const std::shared_ptr<Cables::Entities::Interfaces::ICable>& cable)
    {
        linkReference(m_cable, cable);
    }

    const QUuid& StationId() const override { return m_station.id(); }
    void SetStationId(const QUuid& id) override { assignReferenceId(m_station, id); }
    std::shared_ptr<Cables::Entities::Interfaces::IStation> Station() const override { return m_station.object(); }
    void SetStation(const std::shared_ptr<Cables::Entities::Interfaces::IStation>& station) override
    {
        assignReferenceObject(m_station, station);
    }
    /// Points at the station of StationId(), or at none: nothing that is stored changes.
    void LinkStation(const std::shared_ptr<Cables::Entities::Interfaces::IStation>& station)
    {
        linkReference(m_station, station);
    }

    std::shared_ptr<Cables::Entities::Interfaces::IRating> Rating() const override { return m_rating; }
    void SetRating(const std::shared_ptr<Cables::Entities::Interfaces::IRating>& rating) override;
    /// Shows a rating that has this task's id.
    void LinkRating(const std::shared_ptr<Cables::Entities::Interfaces::IRating>& rating)
    {
        assignUnstored(m_rating, rating);
    }

    const QDateTime& CreationDate() const override { return m_creationDate; }
    void SetCreationDate(const QDateTime& date) override { assign(m_creationDate, date); }
    const QString& Tester() const override { return m_tester; }
    void SetTester(const QString& tester) override { assign(m_tester, tester); }
    const QString& Path() const override { return m_path; }
    void SetPath(const QString& path) override { assign(m_path, path); }
    const QString& Comment() const override { return m_comment; }
    void SetComment(const QString& comment) override { assign(m_comment, comment); }
    const QString& KvtrRecommentations() const override { return m_kvtrRecommentation; }
    void SetKvtrRecommentation(const QString& recommendation) override { assign(m_kvtrRecommentation, recommendation); }

    QStringList Devices() const override;
    void SetDevices(const QStringList& devices) override;
    /// The devices in the text form to store: TextList's, or another text that was read and still stands for the list.
    const QString& DevicesText() const { return m_devices; }
    void SetDevicesFromText(const QString& text) { assign(m_devices, text); }

    double MaxVoltage() const override { return m_maxVoltage; }
    void SetMaxVoltage(const double& voltage) override { assignUnstored(m_maxVoltage, voltage); }
    double Pdiv() const override { return m_pdiv; }
    void SetPdiv(const double& voltage) override { assignUnstored(m_pdiv, voltage); }
    double Pdev() const override { return m_pdev; }
    void SetPdev(const double& voltage) override { assignUnstored(m_pdev, voltage); }

    const std::vector<std::shared_ptr<Interfaces::IPdReport>>& Reports() const override { return m_reports.items(); }
    void SetReports(const std::vector<std::shared_ptr<Interfaces::IPdReport>>& reports) override;
    std::shared_ptr<Interfaces::IPdReport> ReportLatest() const override;
    void AddReport(const std::shared_ptr<Interfaces::IPdReport>& report) override;
    void RemoveReport(const std::shared_ptr<Interfaces::IPdReport>& report) override;
    /// Lists reports that have this task's id: nothing changes at the reports, nor at those listed before.
    void LinkReports(std::vector<std::shared_ptr<Interfaces::IPdReport>> reports);

    QJsonObject toJson() const override;

private:
    void adopt(Interfaces::IPdReport& report);
    void release(Interfaces::IPdReport& report) const;

    QOR::Entities::OwningReference<Cables::Entities::Interfaces::ICable> m_cable;
    QOR::Entities::OwningReference<Cables::Entities::Interfaces::IStation> m_station;
    std::shared_ptr<Cables::Entities::Interfaces::IRating> m_rating;
    QDateTime m_creationDate;
    QString m_tester;
    QString m_path;
    QString m_comment;
    QString m_devices;
    QString m_kvtrRecommentation;
    double m_maxVoltage = std::numeric_limits<double>::quiet_NaN();
    double m_pdiv = std::numeric_limits<double>::quiet_NaN();
    double m_pdev = std::numeric_limits<double>::quiet_NaN();
    QOR::Entities::ChildList<Interfaces::IPdReport> m_reports;
};

} // namespace PD::Entities

template <>
inline constexpr auto QOR::Entities::properties<PD::Entities::PdTask> = [] {
    using namespace PD::Entities;
    using E = PdTask;
    return std::tuple{
        reference<Cables::Entities::Cable, &E::CableId, &E::SetCableId, &E::Cable, &E::SetCable>("cableId"),
        reference<Cables::Entities::Station, &E::StationId, &E::SetStationId, &E::Station, &E::SetStation>("stationId"),
        stored<&E::CreationDate, &E::SetCreationDate>("creationDate"),
        stored<&E::Tester, &E::SetTester>("tester"),
        stored<&E::Path, &E::SetPath>("path"),
        stored<&E::Comment, &E::SetComment>("comment"),
        stored<&E::DevicesText, &E::SetDevicesFromText, &E::Devices>("devices"),
        stored<&E::KvtrRecommentations, &E::SetKvtrRecommentation>("kvtrRecommentations"),
        inMemory<&E::MaxVoltage, &E::SetMaxVoltage>("maxVoltage"),
        inMemory<&E::Pdiv, &E::SetPdiv>("pdiv"),
        inMemory<&E::Pdev, &E::SetPdev>("pdev"),
        children<&E::Reports>("reports")};
}();
