#pragma once

#include "entities/cables/ISegmentDetail.h"
#include "entities/cables/NamedEntity.h"
#include "entities/qor/Reference.h"

#include <limits>

namespace Cables::Entities {

/// What segments are made of; table `ce_segment_detail`.
class CABLES_EXPORT SegmentDetail : public NamedEntity<Interfaces::ISegmentDetail>
{
public:
    ~SegmentDetail() override;

    double Velocity() const override { return m_velocity; }
    void SetVelocity(const double& velocity) override { assign(m_velocity, velocity); }
    bool IsFavorite() const override { return m_isFavorite; }
    void SetIsFavorite(const bool& isFavorite) override { assign(m_isFavorite, isFavorite); }
    const QUuid& InsulationId() const override { return m_insulation.id(); }
    void SetInsulationId(const QUuid& id) override;
    std::shared_ptr<Interfaces::IInsulation> Insulation() const override { return m_insulation.object(); }
    void SetInsulation(std::shared_ptr<Interfaces::IInsulation> insulation) override;
    const QUuid& TypeId() const override { return m_type.id(); }
    void SetTypeId(const QUuid& id) override;
    std::shared_ptr<Interfaces::ISegmentType> Type() const override { return m_type.object(); }
    void SetType(std::shared_ptr<Interfaces::ISegmentType> type) override;

    QJsonObject toJson() const override;

private:
    QOR::Entities::OwningReference<Interfaces::IInsulation> m_insulation;
    QOR::Entities::OwningReference<Interfaces::ISegmentType> m_type;
    double m_velocity = std::numeric_limits<double>::quiet_NaN();
    bool m_isFavorite = false;
};

} // namespace Cables::Entities
