#include "entities/pd/PdFile.h"

#include "entities/pd/IPdReport.h"

namespace PD::Entities {

Interfaces::IPdFile::~IPdFile() = default;

void PdFile::SetReportId(const QUuid& id)
{
    const std::shared_ptr<PdFile> self = weak_from_this().lock();
    assignTwoEndedId(m_report, id, [&self](Interfaces::IPdReport& former) { former.RemoveFile(self); });
}

void PdFile::SetReport(const std::shared_ptr<Interfaces::IPdReport>& report)
{
    const std::shared_ptr<PdFile> self = weak_from_this().lock();
    assignTwoEndedObject(
        m_report, report, [&self](Interfaces::IPdReport& former) { former.RemoveFile(self); },
        [this, &self](Interfaces::IPdReport& joined) {
            if (self && isListedBy(joined))
                joined.AddFile(self);
        });
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
