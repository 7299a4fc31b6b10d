#pragma once

#include "entities/cables/ITermination.h"
#include "entities/cables/NamedEntity.h"

namespace Cables::Entities {

/// Kind of termination; table `ce_termination`.
class CABLES_EXPORT Termination : public NamedEntity<Interfaces::ITermination>
{
public:
    ~Termination() override;
};

} // namespace Cables::Entities
