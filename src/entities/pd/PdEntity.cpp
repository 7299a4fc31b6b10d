#include "entities/pd/PdEntity.h"

#include "entities/pd/IPdReportPart.h"

namespace PD::Entities {

Interfaces::IPdEntity::~IPdEntity() = default;
Interfaces::IPdReportPart::~IPdReportPart() = default;

} // namespace PD::Entities
