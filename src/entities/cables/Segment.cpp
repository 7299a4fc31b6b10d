#include "entities/cables/Segment.h"

#include "entities/cables/IPhase.h"
#include "entities/cables/ISegmentDetail.h"

namespace Cables::Entities {

using QOR::Entities::toJsonValue;

Interfaces::ISegment::~ISegment() = default;

Segment::~Segment() = default;

void Segment::SetPhaseId(const QUuid& id)
{
    assignReferenceId(m_phase, id);
}

void Segment::SetPhase(std::shared_ptr<Interfaces::IPhase> phase)
{
    assignReferenceObject(m_phase, std::move(phase));
}

void Segment::SetDetailId(const QUuid& id)
{
    assignReferenceId(m_detail, id);
}

void Segment::SetDetail(std::shared_ptr<Interfaces::ISegmentDetail> detail)
{
    assignReferenceObject(m_detail, std::move(detail));
}

QJsonObject Segment::toJson() const
{
    QJsonObject json = NamedEntity::toJson();
    json.insert(QLatin1String("index"), qint64(m_index));
    json.insert(QLatin1String("length"), toJsonValue(m_length));
    json.insert(QLatin1String("installationDate"), toJsonValue(m_installationDate));
    json.insert(QLatin1String("phaseId"), toJsonValue(m_phase.id()));
    json.insert(QLatin1String("detailId"), toJsonValue(m_detail.id()));
    return json;
}

} // namespace Cables::Entities
