#pragma once

#include "entities/cables/IInsulation.h"
#include "entities/cables/ISegmentDetail.h"
#include "entities/cables/ISegmentType.h"
#include "entities/cables/NamedEntity.h"
#include "entities/qor/Reference.h"

#include <limits>

namespace Cables::Entities {

class Insulation;
class SegmentType;

/// What segments are made of; table `ce_segment_detail`.
class CABLES_EXPORT SegmentDetail : public NamedEntity<Interfaces::ISegmentDetail>
{
public:
    double Velocity() const override { return m_velocity; }
    void SetVelocity(const double& velocity) override { assign(m_velocity, velocity); }
    bool IsFavorite() const override { return m_isFavorite; }
    void SetIsFavorite(const bool& isFavorite) override { assign(m_isFavorite, isFavorite); }
    const QUuid& InsulationId() const override { return m_insulation.id(); }
    void SetInsulationId(const QUuid& id) override { assignReferenceId(m_insulation, id); }
    std::shared_ptr<Interfaces::IInsulation> Insulation() const override { return m_insulation.object(); }
    void SetInsulation(std::shared_ptr<Interfaces::IInsulation> insulation) override
    {
        assignReferenceObject(m_insulation, std::move(insulation));
    }
    const QUuid& TypeId() const override { return m_type.id(); }
    void SetTypeId(const QUuid& id) override { assignReferenceId(m_type, id); }
    std::shared_ptr<Interfaces::ISegmentType> Type() const override { return m_type.object(); }
    void SetType(std::shared_ptr<Interfaces::ISegmentType> type) override
    {
        assignReferenceObject(m_type, std::move(type));
    }

    QJsonObject toJson() const override;

private:
    QOR::Entities::OwningReference<Interfaces::IInsulation> m_insulation;
    QOR::Entities::OwningReference<Interfaces::ISegmentType> m_type;
    double m_velocity = std::numeric_limits<double>::quiet_NaN();
    bool m_isFavorite = false;
};

} // namespace Cables::Entities

template <>
inline constexpr auto QOR::Entities::properties<Cables::Entities::SegmentDetail> = [] {
    using namespace Cables::Entities;
    using E = SegmentDetail;
    return std::tuple{
        stored<&E::Name, &E::SetName>("name"), stored<&E::Velocity, &E::SetVelocity>("velocity"),
        stored<&E::IsFavorite, &E::SetIsFavorite>("isFavorite"),
        reference<Insulation, &E::InsulationId, &E::SetInsulationId, &E::Insulation, &E::SetInsulation>("insulationId"),
        reference<SegmentType, &E::TypeId, &E::SetTypeId, &E::Type, &E::SetType>("typeId")};
}();
