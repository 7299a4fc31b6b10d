#include "entities/cables/Segment.h"

#include "entities/cables/IPhase.h"
#include "entities/cables/ISegmentDetail.h"

namespace Cables::Entities {

using QOR::Entities::toJsonValue;

Interfaces::ISegment::~ISegment() = default;

Segment::~Segment() = default;

void Segment::SetPhaseId(const QUuid& id)
{
    const std::shared_ptr<Segment> self = weak_from_this().lock();
    assignTwoEndedId(m_phase, id, [&self](Interfaces::IPhase& former) { former.RemoveSegment(self); });
}

void Segment::SetPhase(std::shared_ptr<Interfaces::IPhase> phase)
{
    const std::shared_ptr<Segment> self = weak_from_this().lock();
    assignTwoEndedObject(
        m_phase, std::move(phase), [&self](Interfaces::IPhase& former) { former.RemoveSegment(self); },
        [this, &self](Interfaces::IPhase& joined) {
            if (self && isListedBy(joined))
                joined.AddSegment(self);
        });
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
