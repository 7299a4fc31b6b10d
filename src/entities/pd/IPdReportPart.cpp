#include "entities/pd/IPdReportPart.h"

namespace PD::Entities::Interfaces {

IPdReportPart::~IPdReportPart() = default;

} // namespace PD::Entities::Interfaces
