#pragma once

#include "entities/cables/INamedEntity.h"

#include <memory>

namespace Cables::Entities::Interfaces {

class IInsulation;
class ISegmentType;

/// What a segment is made of. Many segments share one detail.
class CABLES_EXPORT ISegmentDetail : public INamedEntity
{
public:
    ~ISegmentDetail() override = default;

    /// Propagation velocity of a pulse, metres per second; NaN when it is not known, 0 for joints.
    virtual double Velocity() const = 0;
    virtual void SetVelocity(const double& velocity) = 0;

    /// Whether users want it offered first.
    virtual bool IsFavorite() const = 0;
    virtual void SetIsFavorite(const bool& isFavorite) = 0;

    /// Insulation material, null for joints; the detail keeps it alive.
    virtual const QUuid& InsulationId() const = 0;
    virtual void SetInsulationId(const QUuid& id) = 0;
    virtual std::shared_ptr<IInsulation> Insulation() const = 0;
    virtual void SetInsulation(std::shared_ptr<IInsulation> insulation) = 0;

    /// Cable section or joint; the detail keeps the type alive.
    virtual const QUuid& TypeId() const = 0;
    virtual void SetTypeId(const QUuid& id) = 0;
    virtual std::shared_ptr<ISegmentType> Type() const = 0;
    virtual void SetType(std::shared_ptr<ISegmentType> type) = 0;
};

} // namespace Cables::Entities::Interfaces
