#pragma once

#include "entities/cables/INamedEntity.h"

namespace Cables::Entities::Interfaces {

/// Kind of segment: a cable section or a joint.
class CABLES_EXPORT ISegmentType : public INamedEntity
{
public:
    ~ISegmentType() override = default;

    /// Whether a segment of this kind joins two cable sections.
    virtual bool IsJoint() const = 0;
    virtual void SetIsJoint(const bool& isJoint) = 0;
};

} // namespace Cables::Entities::Interfaces
