#pragma once

#include "entities/cables/CablesExport.h"
#include "entities/qor/StoredEntity.h"

#include <QString>

namespace Cables::Entities {

/// An entity of the cable network that has a name.
template <typename Interface>
class CABLES_EXPORT NamedEntity : public QOR::Entities::StoredEntity<Interface>
{
public:
    const QString& Name() const override { return m_name; }
    void SetName(const QString& name) override { this->assign(m_name, name); }

protected:
    NamedEntity() = default;
    NamedEntity(const NamedEntity&) = default;

private:
    QString m_name;
};

} // namespace Cables::Entities
