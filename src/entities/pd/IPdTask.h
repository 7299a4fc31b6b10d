#pragma once

#include "entities/pd/IPdEntity.h"

#include <QDateTime>
#include <QStringList>

#include <memory>
#include <vector>

namespace Cables::Entities::Interfaces {
class ICable;
class IRating;
class IStation;
} // namespace Cables::Entities::Interfaces

namespace PD::Entities::Interfaces {

class IPdReport;

/// One partial-discharge test of a cable.
class PD_EXPORT IPdTask : public IPdEntity
{
public:
    ~IPdTask() override = default;

    /// The cable that was tested; shared.
    virtual const QUuid& CableId() const = 0;
    virtual void SetCableId(const QUuid& id) = 0;
    virtual std::shared_ptr<Cables::Entities::Interfaces::ICable> Cable() const = 0;
    virtual void SetCable(const std::shared_ptr<Cables::Entities::Interfaces::ICable>& cable) = 0;

    /// The station that the test was made from; shared.
    virtual const QUuid& StationId() const = 0;
    virtual void SetStationId(const QUuid& id) = 0;
    virtual std::shared_ptr<Cables::Entities::Interfaces::IStation> Station() const = 0;
    virtual void SetStation(const std::shared_ptr<Cables::Entities::Interfaces::IStation>& station) = 0;

    /// The evaluation of the test; shared. It is the rating that holds the task's id: setting one gives it that id, and
    /// one that is replaced keeps it.
    virtual std::shared_ptr<Cables::Entities::Interfaces::IRating> Rating() const = 0;
    virtual void SetRating(const std::shared_ptr<Cables::Entities::Interfaces::IRating>& rating) = 0;

    /// When the test was set up.
    virtual const QDateTime& CreationDate() const = 0;
    virtual void SetCreationDate(const QDateTime& date) = 0;

    /// Who made the test.
    virtual const QString& Tester() const = 0;
    virtual void SetTester(const QString& tester) = 0;

    /// Where the test's files lie.
    virtual const QString& Path() const = 0;
    virtual void SetPath(const QString& path) = 0;

    /// Free text.
    virtual const QString& Comment() const = 0;
    virtual void SetComment(const QString& comment) = 0;

    /// The devices used, in order.
    virtual QStringList Devices() const = 0;
    virtual void SetDevices(const QStringList& devices) = 0;

    /// Recommendation for the test system. The odd names, one plural and one not, are what callers use.
    virtual const QString& KvtrRecommentations() const = 0;
    virtual void SetKvtrRecommentation(const QString& recommendation) = 0;

    /// Highest voltage applied, volts. Not stored with the task.
    virtual double MaxVoltage() const = 0;
    virtual void SetMaxVoltage(const double& voltage) = 0;

    /// Voltage at which partial discharge sets in, volts. Not stored with the task.
    virtual double Pdiv() const = 0;
    virtual void SetPdiv(const double& voltage) = 0;

    /// Voltage at which partial discharge goes out, volts. Not stored with the task.
    virtual double Pdev() const = 0;
    virtual void SetPdev(const double& voltage) = 0;

    /// The task's reports, which it owns.
    virtual const std::vector<std::shared_ptr<IPdReport>>& Reports() const = 0;
    virtual void SetReports(const std::vector<std::shared_ptr<IPdReport>>& reports) = 0;

    /**
     * The report that was created last: of several of one time the one that stands last in the list, and one without a
     * time only when none has one. Null when the task has no report.
     */
    virtual std::shared_ptr<IPdReport> ReportLatest() const = 0;

    /// Appends a report; null and one held already change nothing.
    virtual void AddReport(const std::shared_ptr<IPdReport>& report);
    /// Takes this very object out of the list.
    virtual void RemoveReport(const std::shared_ptr<IPdReport>& report);
};

} // namespace PD::Entities::Interfaces
