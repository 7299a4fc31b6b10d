#pragma once

#include "entities/cables/ICable.h"
#include "entities/cables/IOwner.h"
#include "entities/cables/IStation.h"
#include "entities/cables/ISwitchgear.h"
#include "entities/cables/ITermination.h"
#include "entities/qor/Children.h"
#include "entities/qor/Reference.h"
#include "entities/qor/StoredEntity.h"

#include <limits>

namespace Cables::Entities {

class Owner;
class Route;
class Station;
class Switchgear;
class Termination;

/**
 * Cable with all that belongs to it; table `ce_cable`. Its phases and its route can refer to it as an object only if a
 * shared pointer owns it. They do not keep it alive: dropping the last reference to a cable frees the whole network
 * that only it refers to.
 */
class CABLES_EXPORT Cable : public QOR::Entities::StoredEntity<Interfaces::ICable>,
                            public std::enable_shared_from_this<Cable>
{
public:
    void SetId(const QUuid& id) override;
    const QString& Number() const override { return m_number; }
    void SetNumber(const QString& number) override { assign(m_number, number); }
    double Voltage() const override { return m_voltage; }
    void SetVoltage(const double& voltage) override { assign(m_voltage, voltage); }
    QDate InstallationDate() const override { return m_installationDate; }
    void SetInstallationDate(const QDate& date) override { assign(m_installationDate, date); }
    Enumerations::DiagnosticStatus DiagnosticStatus() const override { return m_diagnosticStatus; }
    void SetDiagnosticStatus(const Enumerations::DiagnosticStatus& status) override
    {
        assign(m_diagnosticStatus, status);
    }
    const QString& City() const override { return m_city; }
    void SetCity(const QString& city) override { assign(m_city, city); }
    Enumerations::CableType Type() const override { return m_type; }
    void SetType(const Enumerations::CableType& type) override { assign(m_type, type); }
    int CableStatus() const override { return m_cableStatus; }
    void SetCableStatus(const int& status) override { assign(m_cableStatus, status); }
    const QString& Comment() const override { return m_comment; }
    void SetComment(const QString& comment) override { assign(m_comment, comment); }
    double Length() const override { return m_length; }
    void SetLength(double length) override { assign(m_length, length); }
    int Importance() const override { return m_importance; }
    void SetImportance(int importance) override { assign(m_importance, importance); }
    const QByteArray& QrCode() const override { return m_qrCode; }
    void SetQrCode(const QByteArray& code) override { assignUnstored(m_qrCode, code); }
    const QString& ratingMeasureID() const override { return m_ratingMeasureId; }
    void SetRatingMeasureID(const QString& id) override { assignUnstored(m_ratingMeasureId, id); }

    const QUuid& StationAId() const override { return m_stationA.id(); }
    void SetStationAId(const QUuid& id) override { assignReferenceId(m_stationA, id); }
    std::shared_ptr<Interfaces::IStation> StationA() const override { return m_stationA.object(); }
    void SetStationA(std::shared_ptr<Interfaces::IStation> station) override
    {
        assignReferenceObject(m_stationA, std::move(station));
    }
    const QUuid& StationBId() const override { return m_stationB.id(); }
    void SetStationBId(const QUuid& id) override { assignReferenceId(m_stationB, id); }
    std::shared_ptr<Interfaces::IStation> StationB() const override { return m_stationB.object(); }
    void SetStationB(std::shared_ptr<Interfaces::IStation> station) override
    {
        assignReferenceObject(m_stationB, std::move(station));
    }
    const QUuid& TerminationAId() const override { return m_terminationA.id(); }
    void SetTerminationAId(const QUuid& id) override { assignReferenceId(m_terminationA, id); }
    std::shared_ptr<Interfaces::ITermination> TerminationA() const override { return m_terminationA.object(); }
    void SetTerminationA(std::shared_ptr<Interfaces::ITermination> termination) override
    {
        assignReferenceObject(m_terminationA, std::move(termination));
    }
    const QUuid& TerminationBId() const override { return m_terminationB.id(); }
    void SetTerminationBId(const QUuid& id) override { assignReferenceId(m_terminationB, id); }
    std::shared_ptr<Interfaces::ITermination> TerminationB() const override { return m_terminationB.object(); }
    void SetTerminationB(std::shared_ptr<Interfaces::ITermination> termination) override
    {
        assignReferenceObject(m_terminationB, std::move(termination));
    }
    const QUuid& SwitchgearAId() const override { return m_switchgearA.id(); }
    void SetSwitchgearAId(const QUuid& id) override { assignReferenceId(m_switchgearA, id); }
    std::shared_ptr<Interfaces::ISwitchgear> SwitchGearA() const override { return m_switchgearA.object(); }
    void SetSwitchgearA(std::shared_ptr<Interfaces::ISwitchgear> switchgear) override
    {
        assignReferenceObject(m_switchgearA, std::move(switchgear));
    }
    const QUuid& SwitchgearBId() const override { return m_switchgearB.id(); }
    void SetSwitchgearBId(const QUuid& id) override { assignReferenceId(m_switchgearB, id); }
    std::shared_ptr<Interfaces::ISwitchgear> SwitchGearB() const override { return m_switchgearB.object(); }
    void SetSwitchgearB(std::shared_ptr<Interfaces::ISwitchgear> switchgear) override
    {
        assignReferenceObject(m_switchgearB, std::move(switchgear));
    }
    const QUuid& RouteId() const override { return m_route.id(); }
    void SetRouteId(const QUuid& id) override;
    std::shared_ptr<Interfaces::IRoute> Route() const override { return m_route.object(); }
    void SetRoute(std::shared_ptr<Interfaces::IRoute> route) override;
    /// Points at the route of RouteId(): nothing that is stored changes, neither here nor at the route.
    void LinkRoute(const std::shared_ptr<Interfaces::IRoute>& route);
    const QUuid& OwnerId() const override { return m_owner.id(); }
    void SetOwnerId(const QUuid& id) override { assignReferenceId(m_owner, id); }
    std::shared_ptr<Interfaces::IOwner> Owner() const override { return m_owner.object(); }
    void SetOwner(std::shared_ptr<Interfaces::IOwner> owner) override
    {
        assignReferenceObject(m_owner, std::move(owner));
    }
    std::shared_ptr<Interfaces::IRating> Rating() const override { return m_rating; }
    void SetRating(std::shared_ptr<Interfaces::IRating> rating) override;
    /// Shows a rating that has this cable's id.
    void LinkRating(std::shared_ptr<Interfaces::IRating> rating) { assignUnstored(m_rating, std::move(rating)); }

    const std::vector<std::shared_ptr<Interfaces::IPhase>>& Phases() const override { return m_phases.items(); }
    void SetPhases(std::vector<std::shared_ptr<Interfaces::IPhase>>& phases) override;
    void AddPhase(std::shared_ptr<Interfaces::IPhase> phase) override;
    void RemovePhase(std::shared_ptr<Interfaces::IPhase> phase) override;
    /// Lists phases that have this cable's id: nothing changes at the phases, nor at those listed before.
    void LinkPhases(std::vector<std::shared_ptr<Interfaces::IPhase>> phases);

    int NrOfJoint() const override;
    double MinVelocity() const override;
    double MaxVelocity() const override;
    unsigned int segmentIdFingerprint() const override;

    QJsonObject toJson() const override;

private:
    template <typename Child>
    void adopt(Child& child);
    template <typename Child>
    void release(Child& child) const;

    QOR::Entities::OwningReference<Interfaces::IStation> m_stationA;
    QOR::Entities::OwningReference<Interfaces::IStation> m_stationB;
    QOR::Entities::OwningReference<Interfaces::ITermination> m_terminationA;
    QOR::Entities::OwningReference<Interfaces::ITermination> m_terminationB;
    QOR::Entities::OwningReference<Interfaces::ISwitchgear> m_switchgearA;
    QOR::Entities::OwningReference<Interfaces::ISwitchgear> m_switchgearB;
    QOR::Entities::OwningReference<Interfaces::IRoute> m_route;
    QOR::Entities::OwningReference<Interfaces::IOwner> m_owner;
    std::shared_ptr<Interfaces::IRating> m_rating;
    QOR::Entities::ChildList<Interfaces::IPhase> m_phases;
    QString m_number;
    QString m_city;
    QString m_comment;
    QString m_ratingMeasureId;
    QByteArray m_qrCode;
    QDate m_installationDate;
    double m_voltage = std::numeric_limits<double>::quiet_NaN();
    double m_length = std::numeric_limits<double>::quiet_NaN();
    Enumerations::DiagnosticStatus m_diagnosticStatus = Enumerations::NotDiagnosed;
    Enumerations::CableType m_type = Enumerations::UnspecifiedCable;
    int m_cableStatus = 0;
    int m_importance = 0;
};

} // namespace Cables::Entities

template <>
inline constexpr auto QOR::Entities::properties<Cables::Entities::Cable> = [] {
    using namespace Cables::Entities;
    using E = Cable;
    return std::tuple{
        stored<&E::Number, &E::SetNumber>("number"),
        stored<&E::Voltage, &E::SetVoltage>("voltage"),
        stored<&E::InstallationDate, &E::SetInstallationDate>("installationDate"),
        stored<&E::DiagnosticStatus, &E::SetDiagnosticStatus>("diagnosticStatus"),
        stored<&E::City, &E::SetCity>("city"),
        stored<&E::Type, &E::SetType>("type"),
        stored<&E::CableStatus, &E::SetCableStatus>("cableStatus"),
        stored<&E::Comment, &E::SetComment>("comment"),
        stored<&E::Length, &E::SetLength>("length"),
        stored<&E::Importance, &E::SetImportance>("importance"),
        inMemory<&E::QrCode, &E::SetQrCode>("qrCode"),
        inMemory<&E::ratingMeasureID, &E::SetRatingMeasureID>("ratingMeasureID"),
        reference<Station, &E::StationAId, &E::SetStationAId, &E::StationA, &E::SetStationA>("stationAId"),
        reference<Station, &E::StationBId, &E::SetStationBId, &E::StationB, &E::SetStationB>("stationBId"),
        reference<Termination, &E::TerminationAId, &E::SetTerminationAId, &E::TerminationA, &E::SetTerminationA>(
            "terminationAId"),
        reference<Termination, &E::TerminationBId, &E::SetTerminationBId, &E::TerminationB, &E::SetTerminationB>(
            "terminationBId"),
        reference<Switchgear, &E::SwitchgearAId, &E::SetSwitchgearAId, &E::SwitchGearA, &E::SetSwitchgearA>(
            "switchgearAId"),
        reference<Switchgear, &E::SwitchgearBId, &E::SetSwitchgearBId, &E::SwitchGearB, &E::SetSwitchgearB>(
            "switchgearBId"),
        reference<Route, &E::RouteId, &E::SetRouteId, &E::Route, &E::SetRoute>("routeId"),
        reference<Owner, &E::OwnerId, &E::SetOwnerId, &E::Owner, &E::SetOwner>("ownerId"),
        children<&E::Phases>("phases")};
}();
