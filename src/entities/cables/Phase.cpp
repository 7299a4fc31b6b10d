#include "entities/cables/Phase.h"

#include "entities/cables/ICable.h"
#include "entities/cables/ISegment.h"
#include "entities/cables/ISegmentDetail.h"

#include <cmath>
#include <limits>

namespace Cables::Entities {

namespace {

/// Whether a length or velocity says something: unknown ones are NaN, or 0 for joints.
bool isKnown(double value)
{
    return std::isfinite(value) && value > 0;
}

} // namespace

void Phase::SetId(const QUuid& id)
{
    const bool hadNone = Id().isNull();
    StoredEntity::SetId(id);
    if (!hadNone)
        return;
    // The segments that were added before could not know the id.
    const std::vector<std::shared_ptr<Interfaces::ISegment>> segments = m_segments.items();
    for (const std::shared_ptr<Interfaces::ISegment>& segment : segments)
        adopt(*segment);
}

void Phase::SetCableId(const QUuid& id)
{
    const std::shared_ptr<Phase> self = weak_from_this().lock();
    assignTwoEndedId(m_cable, id, [&self](Interfaces::ICable& former) { former.RemovePhase(self); });
}

void Phase::SetCable(std::shared_ptr<Interfaces::ICable> cable)
{
    const std::shared_ptr<Phase> self = weak_from_this().lock();
    assignTwoEndedObject(
        m_cable, std::move(cable), [&self](Interfaces::ICable& former) { former.RemovePhase(self); },
        [this, &self](Interfaces::ICable& joined) {
            if (self && isListedBy(joined))
                joined.AddPhase(self);
        });
}

void Phase::SetSegments(std::vector<std::shared_ptr<Interfaces::ISegment>>& segments)
{
    if (m_segments.replace(
            segments, [this](Interfaces::ISegment& segment) { adopt(segment); },
            [this](Interfaces::ISegment& segment) { release(segment); }))
        notify();
}

void Phase::AddSegment(std::shared_ptr<Interfaces::ISegment> segment)
{
    if (m_segments.add(std::move(segment), [this](Interfaces::ISegment& child) { adopt(child); }))
        notify();
}

void Phase::RemoveSegment(std::shared_ptr<Interfaces::ISegment> segment)
{
    if (m_segments.remove(std::move(segment), [this](Interfaces::ISegment& child) { release(child); }))
        notify();
}

void Phase::LinkSegments(std::vector<std::shared_ptr<Interfaces::ISegment>> segments)
{
    if (m_segments.link(std::move(segments)))
        notify();
}

void Phase::adopt(Interfaces::ISegment& segment)
{
    if (const std::shared_ptr<Phase> self = weak_from_this().lock())
        segment.SetPhase(self);
    else
        segment.SetPhaseId(Id());
}

void Phase::release(Interfaces::ISegment& segment) const
{
    const std::shared_ptr<Interfaces::IPhase> phase = segment.Phase();
    if (phase ? phase.get() == this : segment.PhaseId() == Id())
        segment.SetPhase(nullptr);
}

double Phase::Length() const
{
    double length = 0;
    for (const std::shared_ptr<Interfaces::ISegment>& segment : m_segments.items()) {
        if (isKnown(segment->Length()))
            length += segment->Length();
    }
    return length;
}

double Phase::Velocity() const
{
    double length = 0;
    double seconds = 0;
    for (const std::shared_ptr<Interfaces::ISegment>& segment : m_segments.items()) {
        const std::shared_ptr<Interfaces::ISegmentDetail> detail = segment->Detail();
        if (!detail || !isKnown(segment->Length()) || !isKnown(detail->Velocity()))
            continue;
        length += segment->Length();
        seconds += segment->Length() / detail->Velocity();
    }
    return seconds > 0 ? length / seconds : std::numeric_limits<double>::quiet_NaN();
}

QJsonObject Phase::toJson() const
{
    return QOR::Entities::propertiesToJson(*this);
}

} // namespace Cables::Entities
