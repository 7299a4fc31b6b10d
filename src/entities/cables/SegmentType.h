#pragma once

#include "entities/cables/ISegmentType.h"
#include "entities/cables/NamedEntity.h"

namespace Cables::Entities {

/// Kind of segment; table `ce_segmenttype`.
class CABLES_EXPORT SegmentType : public NamedEntity<Interfaces::ISegmentType>
{
public:
    bool IsJoint() const override { return m_isJoint; }
    void SetIsJoint(const bool& isJoint) override { assign(m_isJoint, isJoint); }

    QJsonObject toJson() const override;

private:
    bool m_isJoint = false;
};

} // namespace Cables::Entities

template <>
inline constexpr auto QOR::Entities::properties<Cables::Entities::SegmentType> = [] {
    using namespace Cables::Entities;
    using E = SegmentType;
    return std::tuple{stored<&E::Name, &E::SetName>("name"), stored<&E::IsJoint, &E::SetIsJoint>("isJoint")};
}();
