#include "entities/lb/CablebookMeasure.h"

#include "entities/qor/QorUuidHelpers.h"

namespace LB::Entities {

void CablebookMeasure::SetMeasureId(int id)
{
    if (Id().isNull())
        SetId(QOR::Entities::QorUuidHelpers::uuidFromInt(id));
    assign(m_measureId, id);
}

QJsonObject CablebookMeasure::toJson() const
{
    return QOR::Entities::propertiesToJson(*this);
}

} // namespace LB::Entities
