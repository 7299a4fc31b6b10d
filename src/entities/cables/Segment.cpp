#include "entities/cables/Segment.h"

#include "entities/cables/IPhase.h"

namespace Cables::Entities {

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

QJsonObject Segment::toJson() const
{
    return QOR::Entities::propertiesToJson(*this);
}

} // namespace Cables::Entities
