#pragma once

#include "entities/cables/IOwner.h"
#include "entities/cables/NamedEntity.h"

namespace Cables::Entities {

/// Owner of cables; table `ce_owner`.
class CABLES_EXPORT Owner : public NamedEntity<Interfaces::IOwner>
{
public:
    ~Owner() override;
};

} // namespace Cables::Entities
