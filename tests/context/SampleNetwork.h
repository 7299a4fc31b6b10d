#pragma once

#include "context/CableContext.h"

#include <vector>

namespace TestSupport {

/**
 * Cables with everything that a cable can have: two stations with points and images, terminations, switchgear, an
 * owner, a route of ten points, three phases, twenty segments of which some are joints, a rating. Every property that
 * is stored has another value than in a new object. The same ids on every run; all New, all linked to one another.
 */
class SampleNetwork
{
public:
    explicit SampleNetwork(int count);

    /// Everything, in no order.
    std::vector<std::shared_ptr<QOR::Entities::Entity>> entities;
    std::vector<std::shared_ptr<Cables::Entities::Cable>> cables;

    void attachTo(DataAccess::Context::AbstractContext& context) const;

private:
    template <typename T>
    std::shared_ptr<T> make(const QString& name);
    std::shared_ptr<Cables::Entities::SegmentDetail> makeDetail(const QString& name, bool isJoint);
    std::shared_ptr<Cables::Entities::Point> makePoint(const QString& name, double offset);
    std::shared_ptr<Cables::Entities::Station> makeStation(const QString& name, double offset);
    void addCable(int number);
    void addRoute(Cables::Entities::Cable& cable, const QString& name, int number);
    void addPhases(Cables::Entities::Cable& cable, const QString& name);
    void addRating(Cables::Entities::Cable& cable, const QString& name);

    std::shared_ptr<Cables::Entities::Owner> m_owner;
    std::shared_ptr<Cables::Entities::Termination> m_terminations[2];
    std::shared_ptr<Cables::Entities::Switchgear> m_switchgears[2];
    std::shared_ptr<Cables::Entities::SegmentDetail> m_section;
    std::shared_ptr<Cables::Entities::SegmentDetail> m_joint;
};

/// The id of the thing called @p name in every sample network.
QUuid sampleId(const QString& name);

/// An owner called @p name, with the id of that name.
std::shared_ptr<Cables::Entities::Owner> makeOwner(const QString& name);

/// All values and links of a network, one line for each entity, in a fixed order.
QByteArray describe(const DataAccess::Context::CableContext& context);

} // namespace TestSupport
