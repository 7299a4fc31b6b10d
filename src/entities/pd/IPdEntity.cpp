#include "entities/pd/IPdEntity.h"

namespace PD::Entities::Interfaces {

IPdEntity::~IPdEntity() = default;

} // namespace PD::Entities::Interfaces
