#include "entities/cables/SegmentDetail.h"

#include "entities/cables/IInsulation.h"
#include "entities/cables/ISegmentType.h"

namespace Cables::Entities {

using QOR::Entities::toJsonValue;

Interfaces::ISegmentDetail::~ISegmentDetail() = default;

SegmentDetail::~SegmentDetail() = default;

void SegmentDetail::SetInsulationId(const QUuid& id)
{
    assignReferenceId(m_insulation, id);
}

void SegmentDetail::SetInsulation(std::shared_ptr<Interfaces::IInsulation> insulation)
{
    assignReferenceObject(m_insulation, std::move(insulation));
}

void SegmentDetail::SetTypeId(const QUuid& id)
{
    assignReferenceId(m_type, id);
}

void SegmentDetail::SetType(std::shared_ptr<Interfaces::ISegmentType> type)
{
    assignReferenceObject(m_type, std::move(type));
}

QJsonObject SegmentDetail::toJson() const
{
    QJsonObject json = NamedEntity::toJson();
    json.insert(QLatin1String("velocity"), toJsonValue(m_velocity));
    json.insert(QLatin1String("isFavorite"), m_isFavorite);
    json.insert(QLatin1String("insulationId"), toJsonValue(m_insulation.id()));
    json.insert(QLatin1String("typeId"), toJsonValue(m_type.id()));
    return json;
}

} // namespace Cables::Entities
