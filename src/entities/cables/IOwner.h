#pragma once

#include "entities/cables/INamedEntity.h"

namespace Cables::Entities::Interfaces {

/// Who owns a cable.
class CABLES_EXPORT IOwner : public INamedEntity
{
public:
    ~IOwner() override = default;
};

} // namespace Cables::Entities::Interfaces
