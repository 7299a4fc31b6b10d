#pragma once

#include "entities/cables/INamedEntity.h"

namespace Cables::Entities::Interfaces {

/// Kind of termination at one end of a cable.
class CABLES_EXPORT ITermination : public INamedEntity
{
public:
    ~ITermination() override = default;
};

} // namespace Cables::Entities::Interfaces
