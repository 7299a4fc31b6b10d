#include "entities/pd/PdReport.h"

#include "entities/pd/IPdFile.h"
#include "entities/pd/IPdIecOverview.h"
#include "entities/pd/IPdLbDiagram.h"
#include "entities/pd/IPdMappingEvent.h"
#include "entities/pd/IPdSummary.h"
#include "entities/pd/IPdTask.h"
#include "entities/pd/IPdTaskInfo.h"

#include <algorithm>

namespace PD::Entities {

namespace {

/// Whether both are stored alike: a null and an empty text are equal to Qt, and are not to a database.
bool sameFilter(const QHash<QString, QString>& left, const QHash<QString, QString>& right)
{
    if (left != right)
        return false;
    for (auto setting = left.begin(); setting != left.end(); ++setting) {
        const auto other = right.find(setting.key());
        if (other.key().isNull() != setting.key().isNull() || other->isNull() != setting->isNull())
            return false;
    }
    return true;
}

} // namespace

void Interfaces::IPdReport::AddFile(const std::shared_ptr<IPdFile>& file)
{
    std::vector<std::shared_ptr<IPdFile>> files = Files();
    files.push_back(file);
    SetFiles(files);
}

void Interfaces::IPdReport::RemoveFile(const std::shared_ptr<IPdFile>& file)
{
    std::vector<std::shared_ptr<IPdFile>> files = Files();
    files.erase(std::remove(files.begin(), files.end(), file), files.end());
    SetFiles(files);
}

void PdReport::SetTaskId(const QUuid& id)
{
    const std::shared_ptr<PdReport> self = weak_from_this().lock();
    assignTwoEndedId(m_task, id, [&self](Interfaces::IPdTask& former) { former.RemoveReport(self); });
}

void PdReport::SetTask(const std::shared_ptr<Interfaces::IPdTask>& task)
{
    const std::shared_ptr<PdReport> self = weak_from_this().lock();
    assignTwoEndedObject(
        m_task, task, [&self](Interfaces::IPdTask& former) { former.RemoveReport(self); },
        [this, &self](Interfaces::IPdTask& joined) {
            if (self && isListedBy(joined))
                joined.AddReport(self);
        });
}

void PdReport::SetFilter(const QHash<QString, QString>& filter)
{
    if (sameFilter(m_filter, filter))
        return;
    m_filter = filter;
    markModified();
}

void PdReport::SetFiles(const std::vector<std::shared_ptr<Interfaces::IPdFile>>& files)
{
    if (m_files.replace(
            files, [this](Interfaces::IPdFile& file) { adopt(file); },
            [this](Interfaces::IPdFile& file) { release(file); }))
        notify();
}

void PdReport::AddFile(const std::shared_ptr<Interfaces::IPdFile>& file)
{
    if (m_files.add(file, [this](Interfaces::IPdFile& child) { adopt(child); }))
        notify();
}

void PdReport::RemoveFile(const std::shared_ptr<Interfaces::IPdFile>& file)
{
    if (m_files.remove(file, [this](Interfaces::IPdFile& child) { release(child); }))
        notify();
}

void PdReport::LinkFiles(std::vector<std::shared_ptr<Interfaces::IPdFile>> files)
{
    if (m_files.link(std::move(files)))
        notify();
}

void PdReport::adopt(Interfaces::IPdFile& file)
{
    if (const std::shared_ptr<PdReport> self = weak_from_this().lock())
        file.SetReport(self);
    else
        file.SetReportId(Id());
}

void PdReport::release(Interfaces::IPdFile& file) const
{
    const std::shared_ptr<Interfaces::IPdReport> report = file.Report();
    if (report ? report.get() == this : file.ReportId() == Id())
        file.SetReport(nullptr);
}

QJsonObject PdReport::toJson() const
{
    return QOR::Entities::propertiesToJson(*this);
}

} // namespace PD::Entities
