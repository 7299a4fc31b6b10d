#include "entities/cables/Termination.h"

namespace Cables::Entities {

Interfaces::ITermination::~ITermination() = default;

Termination::~Termination() = default;

} // namespace Cables::Entities
