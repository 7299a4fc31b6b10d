#include "entities/pd/PdFile.h"

#include "entities/pd/IPdReport.h"

namespace PD::Entities {

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
    return QOR::Entities::propertiesToJson(*this);
}

} // namespace PD::Entities
