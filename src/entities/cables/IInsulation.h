#pragma once

#include "entities/cables/INamedEntity.h"

namespace Cables::Entities::Interfaces {

/// Insulation material of cable sections.
class CABLES_EXPORT IInsulation : public INamedEntity
{
public:
    ~IInsulation() override = default;

    /// Propagation velocity of a pulse in this material, metres per second; NaN when it is not known.
    virtual double Velocity() const = 0;
    virtual void SetVelocity(const double& velocity) = 0;
};

} // namespace Cables::Entities::Interfaces
