#pragma once

#include "entities/pd/IPdEntity.h"

#include <QByteArray>
#include <QString>

#include <memory>

namespace PD::Entities::Interfaces {

class IPdReport;

/// Measurement file attached to a report.
class PD_EXPORT IPdFile : public IPdEntity
{
public:
    ~IPdFile() override = default;

    /// Name of the file, as the measuring application gave it.
    virtual const QString& Name() const = 0;
    virtual void SetName(const QString& name) = 0;

    /// Content; empty too when the file was read without it.
    virtual const QByteArray& File() const = 0;
    virtual void SetFile(const QByteArray& content) = 0;

    /// Hash of the content, by a method of the application's choice: setting the content leaves it as it is.
    virtual const QByteArray& Hash() const = 0;
    virtual void SetHash(const QByteArray& hash) = 0;

    /// The report that the file belongs to and that owns it: the object is null once the report is gone.
    virtual const QUuid& ReportId() const = 0;
    virtual void SetReportId(const QUuid& id) = 0;
    virtual std::shared_ptr<IPdReport> Report() const = 0;
    virtual void SetReport(const std::shared_ptr<IPdReport>& report) = 0;
};

} // namespace PD::Entities::Interfaces
