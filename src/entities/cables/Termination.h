#pragma once

#include "entities/cables/ITermination.h"
#include "entities/cables/NamedEntity.h"

namespace Cables::Entities {

/// Kind of termination; table `ce_termination`.
class CABLES_EXPORT Termination : public NamedEntity<Interfaces::ITermination>
{
public:
    QJsonObject toJson() const override;
};

} // namespace Cables::Entities

template <>
inline constexpr auto QOR::Entities::properties<Cables::Entities::Termination> = [] {
    using namespace Cables::Entities;
    using E = Termination;
    return std::tuple{stored<&E::Name, &E::SetName>("name")};
}();
