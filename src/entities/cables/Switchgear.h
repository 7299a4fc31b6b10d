#pragma once

#include "entities/cables/ISwitchgear.h"
#include "entities/cables/NamedEntity.h"

namespace Cables::Entities {

/// Kind of switchgear; table `ce_switchgear`.
class CABLES_EXPORT Switchgear : public NamedEntity<Interfaces::ISwitchgear>
{
public:
    QJsonObject toJson() const override;
};

} // namespace Cables::Entities

template <>
inline constexpr auto QOR::Entities::properties<Cables::Entities::Switchgear> = [] {
    using namespace Cables::Entities;
    using E = Switchgear;
    return std::tuple{stored<&E::Name, &E::SetName>("name")};
}();
