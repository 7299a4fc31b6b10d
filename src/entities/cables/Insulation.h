#pragma once

#include "entities/cables/IInsulation.h"
#include "entities/cables/NamedEntity.h"

#include <limits>

namespace Cables::Entities {

/// Insulation material; table `ce_insulation`.
class CABLES_EXPORT Insulation : public NamedEntity<Interfaces::IInsulation>
{
public:
    ~Insulation() override = default;

    double Velocity() const override { return m_velocity; }
    void SetVelocity(const double& velocity) override { assign(m_velocity, velocity); }

    QJsonObject toJson() const override;

private:
    double m_velocity = std::numeric_limits<double>::quiet_NaN();
};

} // namespace Cables::Entities

template <>
inline constexpr auto QOR::Entities::properties<Cables::Entities::Insulation> = [] {
    using namespace Cables::Entities;
    using E = Insulation;
    return std::tuple{stored<&E::Name, &E::SetName>("name"), stored<&E::Velocity, &E::SetVelocity>("velocity")};
}();
