#pragma once

#include "entities/cables/CableType.h"
#include "entities/cables/DiagnosticStatus.h"
#include "entities/cables/INetworkEntity.h"

#include <QByteArray>
#include <QDate>
#include <QString>

#include <memory>
#include <vector>

namespace Cables::Entities::Interfaces {

class IOwner;
class IPhase;
class IRating;
class IRoute;
class IStation;
class ISwitchgear;
class ITermination;

/// Cable between two stations, A and B. It keeps everything that it refers to alive.
class CABLES_EXPORT ICable : public INetworkEntity
{
public:
    ~ICable() override = default;

    /// Number or name by which users know the cable.
    virtual const QString& Number() const = 0;
    virtual void SetNumber(const QString& number) = 0;

    /// Nominal voltage, volts; NaN when it is not known.
    virtual double Voltage() const = 0;
    virtual void SetVoltage(const double& voltage) = 0;

    /// Day the cable was laid; null when it is not known.
    virtual QDate InstallationDate() const = 0;
    virtual void SetInstallationDate(const QDate& date) = 0;

    /// What the diagnostics ask for.
    virtual Enumerations::DiagnosticStatus DiagnosticStatus() const = 0;
    virtual void SetDiagnosticStatus(const Enumerations::DiagnosticStatus& status) = 0;

    /// Town the cable is in.
    virtual const QString& City() const = 0;
    virtual void SetCity(const QString& city) = 0;

    /// Build of the cable.
    virtual Enumerations::CableType Type() const = 0;
    virtual void SetType(const Enumerations::CableType& type) = 0;

    /// Operating status; the numbers are the application's.
    virtual int CableStatus() const = 0;
    virtual void SetCableStatus(const int& status) = 0;

    /// Free text.
    virtual const QString& Comment() const = 0;
    virtual void SetComment(const QString& comment) = 0;

    /// Length as it was entered, metres; NaN when it is not known. The phases have lengths of their own.
    virtual double Length() const = 0;
    virtual void SetLength(double length) = 0;

    /// Rank among the cables; the numbers are the application's.
    virtual int Importance() const = 0;
    virtual void SetImportance(int importance) = 0;

    /// Content of the label on the cable. Lives in memory only: setting it does not make the cable Modified.
    virtual const QByteArray& QrCode() const = 0;
    virtual void SetQrCode(const QByteArray& code) = 0;

    /// Which measurement the latest rating is from. It is found by a query and not stored with the cable: setting it
    /// does not make the cable Modified.
    virtual const QString& ratingMeasureID() const = 0;
    virtual void SetRatingMeasureID(const QString& id) = 0;

    /// The stations at the ends.
    virtual const QUuid& StationAId() const = 0;
    virtual void SetStationAId(const QUuid& id) = 0;
    virtual std::shared_ptr<IStation> StationA() const = 0;
    virtual void SetStationA(std::shared_ptr<IStation> station) = 0;
    virtual const QUuid& StationBId() const = 0;
    virtual void SetStationBId(const QUuid& id) = 0;
    virtual std::shared_ptr<IStation> StationB() const = 0;
    virtual void SetStationB(std::shared_ptr<IStation> station) = 0;

    /// The kinds of termination at the ends.
    virtual const QUuid& TerminationAId() const = 0;
    virtual void SetTerminationAId(const QUuid& id) = 0;
    virtual std::shared_ptr<ITermination> TerminationA() const = 0;
    virtual void SetTerminationA(std::shared_ptr<ITermination> termination) = 0;
    virtual const QUuid& TerminationBId() const = 0;
    virtual void SetTerminationBId(const QUuid& id) = 0;
    virtual std::shared_ptr<ITermination> TerminationB() const = 0;
    virtual void SetTerminationB(std::shared_ptr<ITermination> termination) = 0;

    /// The kinds of switchgear at the ends.
    virtual const QUuid& SwitchgearAId() const = 0;
    virtual void SetSwitchgearAId(const QUuid& id) = 0;
    virtual std::shared_ptr<ISwitchgear> SwitchGearA() const = 0;
    virtual void SetSwitchgearA(std::shared_ptr<ISwitchgear> switchgear) = 0;
    virtual const QUuid& SwitchgearBId() const = 0;
    virtual void SetSwitchgearBId(const QUuid& id) = 0;
    virtual std::shared_ptr<ISwitchgear> SwitchGearB() const = 0;
    virtual void SetSwitchgearB(std::shared_ptr<ISwitchgear> switchgear) = 0;

    /// The way over the map. Setting a route makes this its cable; one that is replaced, or belonged to another cable,
    /// leaves there.
    virtual const QUuid& RouteId() const = 0;
    virtual void SetRouteId(const QUuid& id) = 0;
    virtual std::shared_ptr<IRoute> Route() const = 0;
    virtual void SetRoute(std::shared_ptr<IRoute> route) = 0;

    /// Who owns the cable.
    virtual const QUuid& OwnerId() const = 0;
    virtual void SetOwnerId(const QUuid& id) = 0;
    virtual std::shared_ptr<IOwner> Owner() const = 0;
    virtual void SetOwner(std::shared_ptr<IOwner> owner) = 0;

    /// The latest evaluation, null when there is none. The cable stores no id of it: setting one gives it the cable's
    /// id, and one that is replaced goes on being an evaluation of the cable.
    virtual std::shared_ptr<IRating> Rating() const = 0;
    virtual void SetRating(std::shared_ptr<IRating> rating) = 0;

    /// The phases, owned by the cable, in the order in which they were given.
    virtual const std::vector<std::shared_ptr<IPhase>>& Phases() const = 0;
    /// Replaces the list and makes this the cable of every phase; null and repeated entries are left out. The caller's
    /// vector is not changed. What leaves the list belongs to no cable, what comes from another cable leaves its list.
    virtual void SetPhases(std::vector<std::shared_ptr<IPhase>>& phases) = 0;
    /// Appends a phase, makes this its cable and takes it out of the list of its former one; null and a phase held
    /// already change nothing.
    virtual void AddPhase(std::shared_ptr<IPhase> phase) = 0;
    /// Takes this very object out of the list; it belongs to no cable then.
    virtual void RemovePhase(std::shared_ptr<IPhase> phase) = 0;

    /// Number of joints along the cable. A joint goes through all phases, each of which has a segment for it: what
    /// counts is the phase with the most joint segments.
    virtual int NrOfJoint() const = 0;

    /// Lowest velocity among the cable sections (not the joints) of all phases, metres per second; velocities that are
    /// not known or not above 0 do not count, and without any the result is NaN.
    virtual double MinVelocity() const = 0;
    /// Highest velocity, found like the lowest.
    virtual double MaxVelocity() const = 0;

    /// Stands for which segments the cable has, in the order of phases and segments: FNV-1a (32 bits) over the 16 bytes
    /// of each segment's id, the same on every machine; 2166136261 without segments.
    virtual unsigned int segmentIdFingerprint() const = 0;
};

} // namespace Cables::Entities::Interfaces
