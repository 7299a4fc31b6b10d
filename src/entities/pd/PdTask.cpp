#include "entities/pd/PdTask.h"

#include "entities/cables/ICable.h"
#include "entities/cables/IRating.h"
#include "entities/cables/IStation.h"
#include "entities/pd/IPdReport.h"
#include "entities/pd/StoredText.h"
#include "entities/pd/TextList.h"

#include <algorithm>

namespace PD::Entities {

Interfaces::IPdTask::~IPdTask() = default;

void Interfaces::IPdTask::AddReport(const std::shared_ptr<IPdReport>& report)
{
    std::vector<std::shared_ptr<IPdReport>> reports = Reports();
    reports.push_back(report);
    SetReports(reports);
}

void Interfaces::IPdTask::RemoveReport(const std::shared_ptr<IPdReport>& report)
{
    std::vector<std::shared_ptr<IPdReport>> reports = Reports();
    reports.erase(std::remove(reports.begin(), reports.end(), report), reports.end());
    SetReports(reports);
}

void PdTask::SetId(const QUuid& id)
{
    const bool hadNone = Id().isNull();
    StoredEntity::SetId(id);
    if (!hadNone)
        return;
    // What was linked before could not know the id.
    const std::vector<std::shared_ptr<Interfaces::IPdReport>> reports = Reports();
    for (const std::shared_ptr<Interfaces::IPdReport>& report : reports)
        adopt(*report);
    if (m_rating)
        m_rating->SetTaskID(Id());
}

void PdTask::SetCableId(const QUuid& id)
{
    assignReferenceId(m_cable, id);
}

void PdTask::SetCable(const std::shared_ptr<Cables::Entities::Interfaces::ICable>& cable)
{
    assignReferenceObject(m_cable, cable);
}

void PdTask::SetStationId(const QUuid& id)
{
    assignReferenceId(m_station, id);
}

void PdTask::SetStation(const std::shared_ptr<Cables::Entities::Interfaces::IStation>& station)
{
    assignReferenceObject(m_station, station);
}

void PdTask::LinkCable(const std::shared_ptr<Cables::Entities::Interfaces::ICable>& cable)
{
    linkReference(m_cable, cable);
}

void PdTask::LinkStation(const std::shared_ptr<Cables::Entities::Interfaces::IStation>& station)
{
    linkReference(m_station, station);
}

void PdTask::SetRating(const std::shared_ptr<Cables::Entities::Interfaces::IRating>& rating)
{
    if (rating)
        rating->SetTaskID(Id());
    LinkRating(rating);
}

void PdTask::LinkRating(const std::shared_ptr<Cables::Entities::Interfaces::IRating>& rating)
{
    assignUnstored(m_rating, rating);
}

QStringList PdTask::Devices() const
{
    return TextList::fromText(m_devices);
}

void PdTask::SetDevices(const QStringList& devices)
{
    assign(m_devices, storedText<TextList>(m_devices, devices));
}

void PdTask::SetReports(const std::vector<std::shared_ptr<Interfaces::IPdReport>>& reports)
{
    if (m_reports.replace(
            reports, [this](Interfaces::IPdReport& report) { adopt(report); },
            [this](Interfaces::IPdReport& report) { release(report); }))
        notify();
}

void PdTask::AddReport(const std::shared_ptr<Interfaces::IPdReport>& report)
{
    if (m_reports.add(report, [this](Interfaces::IPdReport& child) { adopt(child); }))
        notify();
}

void PdTask::RemoveReport(const std::shared_ptr<Interfaces::IPdReport>& report)
{
    if (m_reports.remove(report, [this](Interfaces::IPdReport& child) { release(child); }))
        notify();
}

void PdTask::LinkReports(std::vector<std::shared_ptr<Interfaces::IPdReport>> reports)
{
    if (m_reports.link(std::move(reports)))
        notify();
}

void PdTask::adopt(Interfaces::IPdReport& report)
{
    if (const std::shared_ptr<PdTask> self = weak_from_this().lock())
        report.SetTask(self);
    else
        report.SetTaskId(Id());
}

void PdTask::release(Interfaces::IPdReport& report) const
{
    const std::shared_ptr<Interfaces::IPdTask> task = report.Task();
    if (task ? task.get() == this : report.TaskId() == Id())
        report.SetTask(nullptr);
}

std::shared_ptr<Interfaces::IPdReport> PdTask::ReportLatest() const
{
    std::shared_ptr<Interfaces::IPdReport> latest;
    for (const auto& report : Reports()) {
        const QDateTime& time = report->CreationTimestamp();
        const QDateTime soFar = latest ? latest->CreationTimestamp() : QDateTime();
        if (!soFar.isValid() || (time.isValid() && time >= soFar))
            latest = report;
    }
    return latest;
}

QJsonObject PdTask::toJson() const
{
    using QOR::Entities::toJsonValue;
    QJsonObject json = StoredEntity::toJson();
    json.insert(QLatin1String("cableId"), toJsonValue(CableId()));
    json.insert(QLatin1String("stationId"), toJsonValue(StationId()));
    json.insert(QLatin1String("creationDate"), toJsonValue(m_creationDate));
    json.insert(QLatin1String("tester"), toJsonValue(m_tester));
    json.insert(QLatin1String("path"), toJsonValue(m_path));
    json.insert(QLatin1String("comment"), toJsonValue(m_comment));
    json.insert(QLatin1String("devices"), QJsonArray::fromStringList(Devices()));
    json.insert(QLatin1String("kvtrRecommentations"), toJsonValue(m_kvtrRecommentation));
    json.insert(QLatin1String("maxVoltage"), toJsonValue(m_maxVoltage));
    json.insert(QLatin1String("pdiv"), toJsonValue(m_pdiv));
    json.insert(QLatin1String("pdev"), toJsonValue(m_pdev));
    json.insert(QLatin1String("reports"), QOR::Entities::childIds(Reports()));
    return json;
}

} // namespace PD::Entities
