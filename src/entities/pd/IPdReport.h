#pragma once

#include "entities/pd/IPdEntity.h"

#include <QDateTime>
#include <QHash>
#include <QString>

#include <memory>
#include <vector>

namespace PD::Entities::Interfaces {

class IPdFile;
class IPdIecOverview;
class IPdLbDiagram;
class IPdMappingEvent;
class IPdSummary;
class IPdTask;
class IPdTaskInfo;

/// One evaluation report of a task. It owns its files and its parts.
class PD_EXPORT IPdReport : public IPdEntity
{
public:
    ~IPdReport() override = default;

    /// The task that the report belongs to and that owns it: the object is null once the task is gone.
    virtual const QUuid& TaskId() const = 0;
    virtual void SetTaskId(const QUuid& id) = 0;
    virtual std::shared_ptr<IPdTask> Task() const = 0;
    virtual void SetTask(const std::shared_ptr<IPdTask>& task) = 0;

    /// When the report was made.
    virtual const QDateTime& CreationTimestamp() const = 0;
    virtual void SetCreationTimestamp(const QDateTime& timestamp) = 0;

    /// Bits whose meaning is the application's.
    virtual int Flags() const = 0;
    virtual void SetFlags(const int& flags) = 0;

    /// Recommendation of the report. The odd spelling is what callers use.
    virtual const QString& Recommentation() const = 0;
    virtual void SetRecommentation(const QString& recommendation) = 0;

    /// Settings of the evaluation, value by key; stored with the report.
    virtual const QHash<QString, QString>& Filter() const = 0;
    virtual void SetFilter(const QHash<QString, QString>& filter) = 0;

    /// The measurement files.
    virtual const std::vector<std::shared_ptr<IPdFile>>& Files() const = 0;
    virtual void SetFiles(const std::vector<std::shared_ptr<IPdFile>>& files) = 0;

    /// The settings of the diagram; null when there are none.
    virtual std::shared_ptr<IPdLbDiagram> LbDiagram() const = 0;
    virtual void SetLbDiagram(const std::shared_ptr<IPdLbDiagram>& diagram) = 0;

    /// What was measured; null when it is not known.
    virtual std::shared_ptr<IPdSummary> Summary() const = 0;
    virtual void setSummary(const std::shared_ptr<IPdSummary>& summary) = 0;

    /// What it was measured with; null when it is not known.
    virtual std::shared_ptr<IPdTaskInfo> TaskInfo() const = 0;
    virtual void setTaskInfo(const std::shared_ptr<IPdTaskInfo>& info) = 0;

    /// The results of each phase.
    virtual const std::vector<std::shared_ptr<IPdIecOverview>>& IecOverview() const = 0;
    virtual void setIecOverview(const std::vector<std::shared_ptr<IPdIecOverview>>& overview) = 0;

    /// The discharges that were located.
    virtual const std::vector<std::shared_ptr<IPdMappingEvent>>& MappingEvents() const = 0;
    virtual void setMappingEvents(const std::vector<std::shared_ptr<IPdMappingEvent>>& events) = 0;

    /// Appends a file; null and one held already change nothing.
    virtual void AddFile(const std::shared_ptr<IPdFile>& file);
    /// Takes this very object out of the list.
    virtual void RemoveFile(const std::shared_ptr<IPdFile>& file);
};

} // namespace PD::Entities::Interfaces
