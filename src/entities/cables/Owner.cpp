#include "entities/cables/Owner.h"

namespace Cables::Entities {

Interfaces::IOwner::~IOwner() = default;

Owner::~Owner() = default;

} // namespace Cables::Entities
