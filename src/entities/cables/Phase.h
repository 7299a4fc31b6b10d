#pragma once

#include "entities/cables/IPhase.h"
#include "entities/qor/Children.h"
#include "entities/qor/Reference.h"
#include "entities/qor/StoredEntity.h"

namespace Cables::Entities {

class Cable;

/// Conductor of a cable; table `ce_phase`. Its segments can refer to it as an object only if a shared pointer owns it.
class CABLES_EXPORT Phase : public QOR::Entities::StoredEntity<Interfaces::IPhase>,
                            public std::enable_shared_from_this<Phase>
{
public:
    void SetId(const QUuid& id) override;
    unsigned int Index() const override { return m_index; }
    void SetIndex(const unsigned int& index) override { assign(m_index, index); }
    const QUuid& CableId() const override { return m_cable.id(); }
    void SetCableId(const QUuid& id) override;
    std::shared_ptr<Interfaces::ICable> Cable() const override { return m_cable.object(); }
    void SetCable(std::shared_ptr<Interfaces::ICable> cable) override;
    /// Points at the cable of CableId(): nothing that is stored changes, and no list of the cable's.
    void LinkCable(const std::shared_ptr<Interfaces::ICable>& cable) { linkReference(m_cable, cable); }
    const std::vector<std::shared_ptr<Interfaces::ISegment>>& Segments() const override { return m_segments.items(); }
    void SetSegments(std::vector<std::shared_ptr<Interfaces::ISegment>>& segments) override;
    void AddSegment(std::shared_ptr<Interfaces::ISegment> segment) override;
    void RemoveSegment(std::shared_ptr<Interfaces::ISegment> segment) override;
    /// Lists segments that have this phase's id: nothing changes at the segments, nor at those listed before.
    void LinkSegments(std::vector<std::shared_ptr<Interfaces::ISegment>> segments);
    double Length() const override;
    double Velocity() const override;

    QJsonObject toJson() const override;

private:
    void adopt(Interfaces::ISegment& segment);
    void release(Interfaces::ISegment& segment) const;
    QOR::Entities::ParentReference<Interfaces::ICable> m_cable;
    QOR::Entities::ChildList<Interfaces::ISegment> m_segments;
    unsigned int m_index = 0;
};

} // namespace Cables::Entities

template <>
inline constexpr auto QOR::Entities::properties<Cables::Entities::Phase> = [] {
    using namespace Cables::Entities;
    using E = Phase;
    return std::tuple{stored<&E::Index, &E::SetIndex>("index"),
                      parent<Cable, &E::CableId, &E::SetCableId, &E::Cable, &E::SetCable>("cableId"),
                      children<&E::Segments>("segments")};
}();
