#include "entities/cables/Switchgear.h"

namespace Cables::Entities {

Interfaces::ISwitchgear::~ISwitchgear() = default;

Switchgear::~Switchgear() = default;

} // namespace Cables::Entities
