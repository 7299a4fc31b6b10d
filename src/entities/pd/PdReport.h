#pragma once

#include "entities/pd/IPdReport.h"
#include "entities/pd/PDExport.h"
#include "entities/qor/Children.h"
#include "entities/qor/Reference.h"
#include "entities/qor/StoredEntity.h"

namespace PD::Entities {

class PdTask;

namespace Interfaces {
class IPdReportPart;
}

/**
 * One evaluation report of a task; tables `pd_report` and, for the filter, `pd_filter`. Its files can refer to it as an
 * object only if a shared pointer owns it; they do not keep it alive.
 */
class PD_EXPORT PdReport : public QOR::Entities::StoredEntity<Interfaces::IPdReport>,
                           public std::enable_shared_from_this<PdReport>
{
public:
    PdReport() = default;
    PdReport(const PdReport&) = default;
    ~PdReport() override;

    void SetId(const QUuid& id) override;

    const QUuid& TaskId() const override { return m_task.id(); }
    void SetTaskId(const QUuid& id) override;
    std::shared_ptr<Interfaces::IPdTask> Task() const override { return m_task.object(); }
    void SetTask(const std::shared_ptr<Interfaces::IPdTask>& task) override;
    /// Points at the task of TaskId(): nothing that is stored changes, and no list of the task's.
    void LinkTask(const std::shared_ptr<Interfaces::IPdTask>& task) { linkReference(m_task, task); }

    const QDateTime& CreationTimestamp() const override { return m_creationTimestamp; }
    void SetCreationTimestamp(const QDateTime& timestamp) override { assign(m_creationTimestamp, timestamp); }
    int Flags() const override { return m_flags; }
    void SetFlags(const int& flags) override { assign(m_flags, flags); }
    const QString& Recommentation() const override { return m_recommentation; }
    void SetRecommentation(const QString& recommendation) override { assign(m_recommentation, recommendation); }
    const QHash<QString, QString>& Filter() const override { return m_filter; }
    void SetFilter(const QHash<QString, QString>& filter) override;

    const std::vector<std::shared_ptr<Interfaces::IPdFile>>& Files() const override { return m_files.items(); }
    void SetFiles(const std::vector<std::shared_ptr<Interfaces::IPdFile>>& files) override;
    std::shared_ptr<Interfaces::IPdLbDiagram> LbDiagram() const override { return m_lbDiagram; }
    void SetLbDiagram(const std::shared_ptr<Interfaces::IPdLbDiagram>& diagram) override;
    std::shared_ptr<Interfaces::IPdSummary> Summary() const override { return m_summary; }
    void setSummary(const std::shared_ptr<Interfaces::IPdSummary>& summary) override;
    std::shared_ptr<Interfaces::IPdTaskInfo> TaskInfo() const override { return m_taskInfo; }
    void setTaskInfo(const std::shared_ptr<Interfaces::IPdTaskInfo>& info) override;
    const std::vector<std::shared_ptr<Interfaces::IPdIecOverview>>& IecOverview() const override;
    void setIecOverview(const std::vector<std::shared_ptr<Interfaces::IPdIecOverview>>& overview) override;
    const std::vector<std::shared_ptr<Interfaces::IPdMappingEvent>>& MappingEvents() const override;
    void setMappingEvents(const std::vector<std::shared_ptr<Interfaces::IPdMappingEvent>>& events) override;
    void AddFile(const std::shared_ptr<Interfaces::IPdFile>& file) override;
    void RemoveFile(const std::shared_ptr<Interfaces::IPdFile>& file) override;

    // These list objects that have this report's id already. Nothing that is stored changes, neither in them nor in
    // those listed before.
    void LinkFiles(std::vector<std::shared_ptr<Interfaces::IPdFile>> files);
    void LinkLbDiagram(std::shared_ptr<Interfaces::IPdLbDiagram> diagram);
    void LinkSummary(std::shared_ptr<Interfaces::IPdSummary> summary);
    void LinkTaskInfo(std::shared_ptr<Interfaces::IPdTaskInfo> info);
    void LinkIecOverview(std::vector<std::shared_ptr<Interfaces::IPdIecOverview>> overview);
    void LinkMappingEvents(std::vector<std::shared_ptr<Interfaces::IPdMappingEvent>> events);

    QJsonObject toJson() const override;

private:
    void adopt(Interfaces::IPdFile& file);
    void release(Interfaces::IPdFile& file) const;

    friend class PdReportListing;
    template <typename T>
    using PartList = std::vector<std::shared_ptr<T>> PdReport::*;
    template <typename T>
    void assignPart(std::shared_ptr<T>& place, std::shared_ptr<T> part);
    template <typename T>
    void assignParts(PartList<T> list, const std::vector<std::shared_ptr<T>>& parts);
    template <typename T>
    void linkPart(std::shared_ptr<T>& place, std::shared_ptr<T> part);
    template <typename T>
    void linkParts(PartList<T> list, std::vector<std::shared_ptr<T>> parts);
    template <typename Visitor>
    void visitParts(const Visitor& visit) const;
    PdReport* noteListed(Interfaces::IPdReportPart& part);
    void noteUnlisted(Interfaces::IPdReportPart& part) const;
    void release(Interfaces::IPdReportPart& part) const;
    std::shared_ptr<Interfaces::IPdReportPart> drop(const Interfaces::IPdReportPart& part);
    template <typename T>
    void dropMoved(PartList<T> list);

    QOR::Entities::ParentReference<Interfaces::IPdTask> m_task;
    QDateTime m_creationTimestamp;
    QString m_recommentation;
    QHash<QString, QString> m_filter;
    QOR::Entities::ChildList<Interfaces::IPdFile> m_files;
    std::shared_ptr<Interfaces::IPdLbDiagram> m_lbDiagram;
    std::shared_ptr<Interfaces::IPdSummary> m_summary;
    std::shared_ptr<Interfaces::IPdTaskInfo> m_taskInfo;
    std::vector<std::shared_ptr<Interfaces::IPdIecOverview>> m_iecOverview;
    std::vector<std::shared_ptr<Interfaces::IPdMappingEvent>> m_mappingEvents;
    int m_flags = 0;
};

} // namespace PD::Entities

template <>
inline constexpr auto QOR::Entities::properties<PD::Entities::PdReport> = [] {
    using namespace PD::Entities;
    using E = PdReport;
    return std::tuple{parent<PdTask, &E::TaskId, &E::SetTaskId, &E::Task, &E::SetTask>("taskId"),
                      stored<&E::CreationTimestamp, &E::SetCreationTimestamp>("creationTimestamp"),
                      stored<&E::Flags, &E::SetFlags>("flags"),
                      stored<&E::Recommentation, &E::SetRecommentation>("recommentation"),
                      stored<&E::Filter, &E::SetFilter>("filter"),
                      children<&E::Files>("files"),
                      children<&E::LbDiagram>("lbDiagram"),
                      children<&E::Summary>("summary"),
                      children<&E::TaskInfo>("taskInfo"),
                      children<&E::IecOverview>("iecOverview"),
                      children<&E::MappingEvents>("mappingEvents")};
}();
