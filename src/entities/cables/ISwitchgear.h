#pragma once

#include "entities/cables/INamedEntity.h"

namespace Cables::Entities::Interfaces {

/// Kind of switchgear at one end of a cable.
class CABLES_EXPORT ISwitchgear : public INamedEntity
{
public:
    ~ISwitchgear() override = default;
};

} // namespace Cables::Entities::Interfaces
