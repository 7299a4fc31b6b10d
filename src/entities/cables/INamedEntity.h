#pragma once

#include "entities/cables/INetworkEntity.h"

#include <QString>

namespace Cables::Entities::Interfaces {

/// An entity of the cable network that has a name.
class CABLES_EXPORT INamedEntity : public INetworkEntity
{
public:
    ~INamedEntity() override = default;

    /// Name shown to users; need not be unique.
    virtual const QString& Name() const = 0;
    virtual void SetName(const QString& name) = 0;
};

} // namespace Cables::Entities::Interfaces
