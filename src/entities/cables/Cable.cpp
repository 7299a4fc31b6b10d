#include "entities/cables/Cable.h"

#include "entities/cables/IPhase.h"
#include "entities/cables/IRating.h"
#include "entities/cables/IRoute.h"
#include "entities/cables/ISegment.h"
#include "entities/cables/ISegmentDetail.h"
#include "entities/cables/ISegmentType.h"
#include "entities/cables/private/Fingerprint.h"

#include <algorithm>
#include <cmath>

namespace Cables::Entities {

namespace {

bool isJoint(const Interfaces::ISegmentDetail& detail)
{
    const std::shared_ptr<Interfaces::ISegmentType> type = detail.Type();
    return type && type->IsJoint();
}

/// The known velocities of the cable sections.
std::vector<double> sectionVelocities(const std::vector<std::shared_ptr<Interfaces::IPhase>>& phases)
{
    std::vector<double> velocities;
    for (const std::shared_ptr<Interfaces::IPhase>& phase : phases) {
        for (const std::shared_ptr<Interfaces::ISegment>& segment : phase->Segments()) {
            const std::shared_ptr<Interfaces::ISegmentDetail> detail = segment->Detail();
            if (detail && !isJoint(*detail) && std::isfinite(detail->Velocity()) && detail->Velocity() > 0)
                velocities.push_back(detail->Velocity());
        }
    }
    return velocities;
}

} // namespace

void Cable::SetId(const QUuid& id)
{
    const bool hadNone = Id().isNull();
    StoredEntity::SetId(id);
    if (!hadNone)
        return;
    // The objects linked before this could not be given the id.
    const std::vector<std::shared_ptr<Interfaces::IPhase>> phases = m_phases.items();
    for (const std::shared_ptr<Interfaces::IPhase>& phase : phases)
        adopt(*phase);
    if (const std::shared_ptr<Interfaces::IRoute> route = m_route.object())
        adopt(*route);
    if (m_rating)
        m_rating->SetCableID(Id());
}

void Cable::SetRouteId(const QUuid& id)
{
    assignTwoEndedId(m_route, id, [this](Interfaces::IRoute& former) { release(former); });
}

void Cable::SetRoute(std::shared_ptr<Interfaces::IRoute> route)
{
    assignTwoEndedObject(
        m_route, std::move(route), [this](Interfaces::IRoute& former) { release(former); },
        [this](Interfaces::IRoute& joined) { adopt(joined); });
}

void Cable::LinkRoute(const std::shared_ptr<Interfaces::IRoute>& route)
{
    linkReference(m_route, route);
}

void Cable::SetRating(std::shared_ptr<Interfaces::IRating> rating)
{
    if (rating)
        rating->SetCableID(Id());
    LinkRating(std::move(rating));
}

void Cable::SetPhases(std::vector<std::shared_ptr<Interfaces::IPhase>>& phases)
{
    if (m_phases.replace(
            phases, [this](Interfaces::IPhase& phase) { adopt(phase); },
            [this](Interfaces::IPhase& phase) { release(phase); }))
        notify();
}

void Cable::AddPhase(std::shared_ptr<Interfaces::IPhase> phase)
{
    if (m_phases.add(std::move(phase), [this](Interfaces::IPhase& child) { adopt(child); }))
        notify();
}

void Cable::RemovePhase(std::shared_ptr<Interfaces::IPhase> phase)
{
    if (m_phases.remove(std::move(phase), [this](Interfaces::IPhase& child) { release(child); }))
        notify();
}

void Cable::LinkPhases(std::vector<std::shared_ptr<Interfaces::IPhase>> phases)
{
    if (m_phases.link(std::move(phases)))
        notify();
}

template <typename Child>
void Cable::adopt(Child& child)
{
    if (const std::shared_ptr<Cable> self = weak_from_this().lock())
        child.SetCable(self);
    else
        child.SetCableId(Id());
}

template <typename Child>
void Cable::release(Child& child) const
{
    const std::shared_ptr<Interfaces::ICable> cable = child.Cable();
    if (cable ? cable.get() == this : child.CableId() == Id())
        child.SetCable(nullptr);
}

int Cable::NrOfJoint() const
{
    std::ptrdiff_t joints = 0;
    for (const std::shared_ptr<Interfaces::IPhase>& phase : m_phases.items()) {
        const auto& segments = phase->Segments();
        const auto count = std::count_if(segments.begin(), segments.end(), [](const auto& segment) {
            const std::shared_ptr<Interfaces::ISegmentDetail> detail = segment->Detail();
            return detail && isJoint(*detail);
        });
        joints = std::max(joints, count);
    }
    return static_cast<int>(joints);
}

double Cable::MinVelocity() const
{
    const std::vector<double> velocities = sectionVelocities(m_phases.items());
    const auto lowest = std::min_element(velocities.begin(), velocities.end());
    return lowest == velocities.end() ? std::numeric_limits<double>::quiet_NaN() : *lowest;
}

double Cable::MaxVelocity() const
{
    const std::vector<double> velocities = sectionVelocities(m_phases.items());
    const auto highest = std::max_element(velocities.begin(), velocities.end());
    return highest == velocities.end() ? std::numeric_limits<double>::quiet_NaN() : *highest;
}

unsigned int Cable::segmentIdFingerprint() const
{
    Fingerprint fingerprint;
    for (const std::shared_ptr<Interfaces::IPhase>& phase : m_phases.items()) {
        for (const std::shared_ptr<Interfaces::ISegment>& segment : phase->Segments())
            fingerprint.add(segment->Id().toRfc4122());
    }
    return fingerprint.value();
}

QJsonObject Cable::toJson() const
{
    return QOR::Entities::propertiesToJson(*this);
}

} // namespace Cables::Entities
