#include "entities/cables/NetworkEntity.h"

#include "entities/cables/INamedEntity.h"

namespace Cables::Entities {

Interfaces::INetworkEntity::~INetworkEntity() = default;
Interfaces::INamedEntity::~INamedEntity() = default;

} // namespace Cables::Entities
