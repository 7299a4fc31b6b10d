#include "entities/cables/SegmentDetail.h"

#include "entities/cables/IInsulation.h"
#include "entities/cables/ISegmentType.h"

namespace Cables::Entities {

Interfaces::ISegmentDetail::~ISegmentDetail() = default;

SegmentDetail::~SegmentDetail() = default;

void SegmentDetail::SetInsulationId(const QUuid& id)
{
    assignReferenceId(m_insulation, id);
}

std::shared_ptr<Interfaces::IInsulation> SegmentDetail::Insulation() const
{
    return m_insulation.object();
}

void SegmentDetail::SetInsulation(std::shared_ptr<Interfaces::IInsulation> insulation)
{
    assignReferenceObject(m_insulation, std::move(insulation));
}

void SegmentDetail::SetTypeId(const QUuid& id)
{
    assignReferenceId(m_type, id);
}

std::shared_ptr<Interfaces::ISegmentType> SegmentDetail::Type() const
{
    return m_type.object();
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
