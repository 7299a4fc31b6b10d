#pragma once

#include "entities/pd/IPdFile.h"
#include "entities/pd/PDExport.h"
#include "entities/qor/Reference.h"
#include "entities/qor/StoredEntity.h"

namespace PD::Entities {

class PdReport;

/// Measurement file attached to a report; table `pd_file`.
class PD_EXPORT PdFile : public QOR::Entities::StoredEntity<Interfaces::IPdFile>,
                         public std::enable_shared_from_this<PdFile>
{
public:
    const QString& Name() const override { return m_name; }
    void SetName(const QString& name) override { assign(m_name, name); }
    const QByteArray& File() const override { return m_file; }
    void SetFile(const QByteArray& content) override { assign(m_file, content); }
    const QByteArray& Hash() const override { return m_hash; }
    void SetHash(const QByteArray& hash) override { assign(m_hash, hash); }

    const QUuid& ReportId() const override { return m_report.id(); }
    void SetReportId(const QUuid& id) override;
    std::shared_ptr<Interfaces::IPdReport> Report() const override { return m_report.object(); }
    void SetReport(const std::shared_ptr<Interfaces::IPdReport>& report) override;
    /// Points at the report of ReportId(): nothing that is stored changes, and no list of the report's.
    void LinkReport(const std::shared_ptr<Interfaces::IPdReport>& report) { linkReference(m_report, report); }

    QJsonObject toJson() const override;

private:
    QString m_name;
    QByteArray m_file;
    QByteArray m_hash;
    QOR::Entities::ParentReference<Interfaces::IPdReport> m_report;
};

} // namespace PD::Entities

template <>
inline constexpr auto QOR::Entities::properties<PD::Entities::PdFile> = [] {
    using namespace PD::Entities;
    using E = PdFile;
    return std::tuple{stored<&E::Name, &E::SetName>("name"), lazy<&E::File, &E::SetFile>("file"),
                      lazy<&E::Hash, &E::SetHash>("hash"),
                      parent<PdReport, &E::ReportId, &E::SetReportId, &E::Report, &E::SetReport>("reportId")};
}();
