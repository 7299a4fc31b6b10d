#pragma once

#include "entities/cables/ISwitchgear.h"
#include "entities/cables/NamedEntity.h"

namespace Cables::Entities {

/// Kind of switchgear; table `ce_switchgear`.
class CABLES_EXPORT Switchgear : public NamedEntity<Interfaces::ISwitchgear>
{
public:
    ~Switchgear() override;
};

} // namespace Cables::Entities
