#pragma once

#include "entities/pd/PDExport.h"
#include "entities/pd/PdEntity.h"

namespace PD::Entities {

/// What the entities share that belong to one report and know it by its id only.
template <typename Interface>
class PD_EXPORT PdReportPart : public PdEntity<Interface>
{
public:
    const QUuid& reportId() const override { return m_reportId; }
    void setReportId(const QUuid& id) override { this->assign(m_reportId, id); }

    QJsonObject toJson() const override
    {
        QJsonObject json = PdEntity<Interface>::toJson();
        json.insert(QLatin1String("reportId"), Cables::Entities::toJsonValue(m_reportId));
        return json;
    }

protected:
    PdReportPart() = default;
    PdReportPart(const PdReportPart&) = default;

private:
    QUuid m_reportId;
};

} // namespace PD::Entities
