#include "entities/pd/PdReport.h"

#include "entities/pd/IPdFile.h"
#include "entities/pd/IPdIecOverview.h"
#include "entities/pd/IPdLbDiagram.h"
#include "entities/pd/IPdMappingEvent.h"
#include "entities/pd/IPdSummary.h"
#include "entities/pd/IPdTask.h"
#include "entities/pd/IPdTaskInfo.h"
#include "entities/qor/Children.h"

namespace PD::Entities {

using QOR::Entities::childIds;
using QOR::Entities::toJsonValue;

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

QJsonObject filterJson(const QHash<QString, QString>& filter)
{
    QJsonObject json;
    for (auto setting = filter.begin(); setting != filter.end(); ++setting)
        json.insert(setting.key(), toJsonValue(setting.value()));
    return json;
}

template <typename T>
QJsonValue childId(const std::shared_ptr<T>& child)
{
    return child ? toJsonValue(child->Id()) : QJsonValue();
}

} // namespace

Interfaces::IPdReport::~IPdReport() = default;

void PdReport::SetTaskId(const QUuid& id)
{
    assignReferenceId(m_task, id);
}

void PdReport::SetTask(const std::shared_ptr<Interfaces::IPdTask>& task)
{
    assignReferenceObject(m_task, task);
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
    assignChildren(m_files, files);
}

void PdReport::SetLbDiagram(const std::shared_ptr<Interfaces::IPdLbDiagram>& diagram)
{
    assignChild(m_lbDiagram, diagram);
}

void PdReport::setSummary(const std::shared_ptr<Interfaces::IPdSummary>& summary)
{
    assignChild(m_summary, summary);
}

void PdReport::setTaskInfo(const std::shared_ptr<Interfaces::IPdTaskInfo>& info)
{
    assignChild(m_taskInfo, info);
}

const std::vector<std::shared_ptr<Interfaces::IPdIecOverview>>& PdReport::IecOverview() const
{
    return m_iecOverview;
}

void PdReport::setIecOverview(const std::vector<std::shared_ptr<Interfaces::IPdIecOverview>>& overview)
{
    assignChildren(m_iecOverview, overview);
}

const std::vector<std::shared_ptr<Interfaces::IPdMappingEvent>>& PdReport::MappingEvents() const
{
    return m_mappingEvents;
}

void PdReport::setMappingEvents(const std::vector<std::shared_ptr<Interfaces::IPdMappingEvent>>& events)
{
    assignChildren(m_mappingEvents, events);
}

void PdReport::adopt(Interfaces::IPdFile& file)
{
    if (const std::shared_ptr<PdReport> self = weak_from_this().lock())
        file.SetReport(self);
    else
        file.SetReportId(Id());
}

void PdReport::adopt(Interfaces::IPdReportPart& part)
{
    part.setReportId(Id());
}

template <typename T>
void PdReport::assignChild(std::shared_ptr<T>& property, const std::shared_ptr<T>& child)
{
    if (child)
        adopt(*child);
    assignUnstored(property, child);
}

template <typename T>
void PdReport::assignChildren(std::vector<std::shared_ptr<T>>& property, const std::vector<std::shared_ptr<T>>& list)
{
    auto children = QOR::Entities::distinctChildren(list);
    for (const auto& child : children)
        adopt(*child);
    assignUnstored(property, std::move(children));
}

QJsonObject PdReport::toJson() const
{
    QJsonObject json = StoredEntity::toJson();
    json.insert(QLatin1String("taskId"), toJsonValue(TaskId()));
    json.insert(QLatin1String("creationTimestamp"), toJsonValue(m_creationTimestamp));
    json.insert(QLatin1String("flags"), m_flags);
    json.insert(QLatin1String("recommentation"), toJsonValue(m_recommentation));
    json.insert(QLatin1String("filter"), filterJson(m_filter));
    json.insert(QLatin1String("files"), childIds(m_files));
    json.insert(QLatin1String("lbDiagram"), childId(m_lbDiagram));
    json.insert(QLatin1String("summary"), childId(m_summary));
    json.insert(QLatin1String("taskInfo"), childId(m_taskInfo));
    json.insert(QLatin1String("iecOverview"), childIds(m_iecOverview));
    json.insert(QLatin1String("mappingEvents"), childIds(m_mappingEvents));
    return json;
}

} // namespace PD::Entities
