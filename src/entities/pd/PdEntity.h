#pragma once

#include "entities/cables/NetworkEntity.h"

namespace PD::Entities {

/// What the partial-discharge entities share, and share with those of the cable network: see there.
template <typename Interface>
using PdEntity = Cables::Entities::NetworkEntity<Interface>;

} // namespace PD::Entities
