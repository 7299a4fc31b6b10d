#include "entities/cables/INamedEntity.h"

namespace Cables::Entities::Interfaces {

INamedEntity::~INamedEntity() = default;

} // namespace Cables::Entities::Interfaces
