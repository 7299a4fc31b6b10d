#include "entities/cables/Phase.h"

#include "entities/cables/ICable.h"
#include "entities/cables/ISegment.h"
#include "entities/cables/ISegmentDetail.h"
#include "entities/qor/Children.h"

#include <cmath>
#include <limits>

namespace Cables::Entities {

using QOR::Entities::childIds;
using QOR::Entities::toJsonValue;

namespace {

/// Whether a length or velocity says something: unknown ones are NaN, or 0 for joints.
bool isKnown(double value)
{
    return std::isfinite(value) && value > 0;
}

} // namespace

Interfaces::IPhase::~IPhase() = default;

Phase::~Phase() = default;

void Phase::SetCableId(const QUuid& id)
{
    assignReferenceId(m_cable, id);
}

void Phase::SetCable(std::shared_ptr<Interfaces::ICable> cable)
{
    assignReferenceObject(m_cable, std::move(cable));
}

void Phase::SetSegments(std::vector<std::shared_ptr<Interfaces::ISegment>>& segments)
{
    std::vector<std::shared_ptr<Interfaces::ISegment>> children = QOR::Entities::distinctChildren(segments);
    for (const std::shared_ptr<Interfaces::ISegment>& segment : children)
        adopt(*segment);
    assignUnstored(m_segments, std::move(children));
}

void Phase::AddSegment(std::shared_ptr<Interfaces::ISegment> segment)
{
    if (!QOR::Entities::addChild(m_segments, segment))
        return;
    adopt(*segment);
    notify();
}

void Phase::RemoveSegment(std::shared_ptr<Interfaces::ISegment> segment)
{
    if (QOR::Entities::removeChild(m_segments, segment))
        notify();
}

void Phase::adopt(Interfaces::ISegment& segment)
{
    if (const std::shared_ptr<Phase> self = weak_from_this().lock())
        segment.SetPhase(self);
    else
        segment.SetPhaseId(Id());
}

double Phase::Length() const
{
    double length = 0;
    for (const std::shared_ptr<Interfaces::ISegment>& segment : m_segments) {
        if (isKnown(segment->Length()))
            length += segment->Length();
    }
    return length;
}

double Phase::Velocity() const
{
    double length = 0;
    double seconds = 0;
    for (const std::shared_ptr<Interfaces::ISegment>& segment : m_segments) {
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
    QJsonObject json = StoredEntity::toJson();
    json.insert(QLatin1String("index"), qint64(m_index));
    json.insert(QLatin1String("cableId"), toJsonValue(m_cable.id()));
    json.insert(QLatin1String("segments"), childIds(m_segments));
    return json;
}

} // namespace Cables::Entities
