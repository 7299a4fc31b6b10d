#include "entities/cables/Cable.h"

#include "entities/cables/Fingerprint.h"
#include "entities/cables/IOwner.h"
#include "entities/cables/IPhase.h"
#include "entities/cables/IRating.h"
#include "entities/cables/IRoute.h"
#include "entities/cables/ISegment.h"
#include "entities/cables/ISegmentDetail.h"
#include "entities/cables/ISegmentType.h"
#include "entities/cables/IStation.h"
#include "entities/cables/ISwitchgear.h"
#include "entities/cables/ITermination.h"

#include <algorithm>
#include <cmath>

namespace Cables::Entities {

using QOR::Entities::childIds;
using QOR::Entities::toJsonValue;

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

Interfaces::ICable::~ICable() = default;

Cable::~Cable() = default;

void Cable::SetId(const QUuid& id)
{
    const bool hadNone = Id().isNull();
    StoredEntity::SetId(id);
    if (!hadNone)
        return;
    // What was linked before could not know the id.
    const std::vector<std::shared_ptr<Interfaces::IPhase>> phases = m_phases.items();
    for (const std::shared_ptr<Interfaces::IPhase>& phase : phases)
        adopt(*phase);
    if (const std::shared_ptr<Interfaces::IRoute> route = m_route.object())
        adopt(*route);
    if (m_rating)
        m_rating->SetCableID(Id());
}

void Cable::SetStationAId(const QUuid& id)
{
    assignReferenceId(m_stationA, id);
}

void Cable::SetStationA(std::shared_ptr<Interfaces::IStation> station)
{
    assignReferenceObject(m_stationA, std::move(station));
}

void Cable::SetStationBId(const QUuid& id)
{
    assignReferenceId(m_stationB, id);
}

void Cable::SetStationB(std::shared_ptr<Interfaces::IStation> station)
{
    assignReferenceObject(m_stationB, std::move(station));
}

void Cable::SetTerminationAId(const QUuid& id)
{
    assignReferenceId(m_terminationA, id);
}

void Cable::SetTerminationA(std::shared_ptr<Interfaces::ITermination> termination)
{
    assignReferenceObject(m_terminationA, std::move(termination));
}

void Cable::SetTerminationBId(const QUuid& id)
{
    assignReferenceId(m_terminationB, id);
}

void Cable::SetTerminationB(std::shared_ptr<Interfaces::ITermination> termination)
{
    assignReferenceObject(m_terminationB, std::move(termination));
}

void Cable::SetSwitchgearAId(const QUuid& id)
{
    assignReferenceId(m_switchgearA, id);
}

void Cable::SetSwitchgearA(std::shared_ptr<Interfaces::ISwitchgear> switchgear)
{
    assignReferenceObject(m_switchgearA, std::move(switchgear));
}

void Cable::SetSwitchgearBId(const QUuid& id)
{
    assignReferenceId(m_switchgearB, id);
}

void Cable::SetSwitchgearB(std::shared_ptr<Interfaces::ISwitchgear> switchgear)
{
    assignReferenceObject(m_switchgearB, std::move(switchgear));
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

void Cable::SetOwnerId(const QUuid& id)
{
    assignReferenceId(m_owner, id);
}

void Cable::SetOwner(std::shared_ptr<Interfaces::IOwner> owner)
{
    assignReferenceObject(m_owner, std::move(owner));
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
    QJsonObject json = StoredEntity::toJson();
    json.insert(QLatin1String("number"), toJsonValue(m_number));
    json.insert(QLatin1String("voltage"), toJsonValue(m_voltage));
    json.insert(QLatin1String("installationDate"), toJsonValue(m_installationDate));
    json.insert(QLatin1String("diagnosticStatus"), static_cast<int>(m_diagnosticStatus));
    json.insert(QLatin1String("city"), toJsonValue(m_city));
    json.insert(QLatin1String("type"), static_cast<int>(m_type));
    json.insert(QLatin1String("cableStatus"), m_cableStatus);
    json.insert(QLatin1String("comment"), toJsonValue(m_comment));
    json.insert(QLatin1String("length"), toJsonValue(m_length));
    json.insert(QLatin1String("importance"), m_importance);
    json.insert(QLatin1String("qrCode"), toJsonValue(m_qrCode));
    json.insert(QLatin1String("ratingMeasureID"), toJsonValue(m_ratingMeasureId));
    json.insert(QLatin1String("stationAId"), toJsonValue(m_stationA.id()));
    json.insert(QLatin1String("stationBId"), toJsonValue(m_stationB.id()));
    json.insert(QLatin1String("terminationAId"), toJsonValue(m_terminationA.id()));
    json.insert(QLatin1String("terminationBId"), toJsonValue(m_terminationB.id()));
    json.insert(QLatin1String("switchgearAId"), toJsonValue(m_switchgearA.id()));
    json.insert(QLatin1String("switchgearBId"), toJsonValue(m_switchgearB.id()));
    json.insert(QLatin1String("routeId"), toJsonValue(m_route.id()));
    json.insert(QLatin1String("ownerId"), toJsonValue(m_owner.id()));
    json.insert(QLatin1String("phases"), childIds(m_phases.items()));
    return json;
}

} // namespace Cables::Entities
