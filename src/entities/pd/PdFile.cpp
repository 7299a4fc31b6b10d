#include "entities/pd/PdFile.h"

#include "entities/pd/IPdReport.h"

namespace PD::Entities {

Interfaces::IPdFile::~IPdFile() = default;

void PdFile::SetReportId(const QUuid& id)
{
    assignReferenceId(m_report, id);
}

void PdFile::SetReport(const std::shared_ptr<Interfaces::IPdReport>& report)
{
    assignReferenceObject(m_report, report);
}

QJsonObject PdFile::toJson() const
{
    using QOR::Entities::toJsonValue;
    QJsonObject json = StoredEntity::toJson();
    json.insert(QLatin1String("name"), toJsonValue(m_name));
    json.insert(QLatin1String("file"), toJsonValue(m_file));
    json.insert(QLatin1String("hash"), toJsonValue(m_hash));
    json.insert(QLatin1String("reportId"), toJsonValue(ReportId()));
    return json;
}

} // namespace PD::Entities
