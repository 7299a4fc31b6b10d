#include "entities/cables/INetworkEntity.h"

namespace Cables::Entities::Interfaces {

INetworkEntity::~INetworkEntity() = default;

} // namespace Cables::Entities::Interfaces
