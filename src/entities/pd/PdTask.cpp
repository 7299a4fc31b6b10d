#include "entities/pd/PdTask.h"

#include "entities/cables/IRating.h"
#include "entities/pd/IPdReport.h"
#include "entities/pd/private/TextForms.h"

#include <algorithm>

namespace PD::Entities {

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
    // The objects linked before this could not be given the id.
    const std::vector<std::shared_ptr<Interfaces::IPdReport>> reports = Reports();
    for (const std::shared_ptr<Interfaces::IPdReport>& report : reports)
        adopt(*report);
    if (m_rating)
        m_rating->SetTaskID(Id());
}

void PdTask::SetRating(const std::shared_ptr<Cables::Entities::Interfaces::IRating>& rating)
{
    if (rating)
        rating->SetTaskID(Id());
    LinkRating(rating);
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
    return QOR::Entities::propertiesToJson(*this);
}

} // namespace PD::Entities
