#pragma once

#include "entities/pd/PDExport.h"
#include "entities/qor/StoredEntity.h"

namespace PD::Entities {

/// What the entities share that belong to one report and know it by its id only.
template <typename Interface>
class PD_EXPORT PdReportPart : public QOR::Entities::StoredEntity<Interface>
{
public:
    const QUuid& reportId() const override { return m_reportId; }
    void setReportId(const QUuid& id) override { this->assign(m_reportId, id); }

    QJsonObject toJson() const override
    {
        QJsonObject json = QOR::Entities::StoredEntity<Interface>::toJson();
        json.insert(QLatin1String("reportId"), QOR::Entities::toJsonValue(m_reportId));
        return json;
    }

protected:
    PdReportPart() = default;
    PdReportPart(const PdReportPart&) = default;

private:
    QUuid m_reportId;
};

} // namespace PD::Entities
