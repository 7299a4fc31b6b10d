#pragma once

#include "entities/cables/IOwner.h"
#include "entities/cables/NamedEntity.h"

namespace Cables::Entities {

/// Owner of cables; table `ce_owner`.
class CABLES_EXPORT Owner : public NamedEntity<Interfaces::IOwner>
{
public:
    QJsonObject toJson() const override;
};

} // namespace Cables::Entities

template <>
inline constexpr auto QOR::Entities::properties<Cables::Entities::Owner> = [] {
    using namespace Cables::Entities;
    using E = Owner;
    return std::tuple{stored<&E::Name, &E::SetName>("name")};
}();
