#pragma once

#include "entities/qor/Entity.h"

#include <functional>
#include <memory>

namespace DataAccess::Context {

/// How an entity holds another one.
enum class Bond {
    Owned,   ///< As a part of itself.
    Referred ///< As something that stands for itself, and may be shared.
};

using BondVisitor = std::function<void(const std::shared_ptr<QOR::Entities::Entity>&, Bond)>;

/**
 * Calls @p visit with each entity that @p entity is linked to and that is stored in the same context: what it owns, and
 * what it refers to. The parent that owns it is referred to; of a task the cable and the station belong to another
 * context.
 */
void visitBonds(const QOR::Entities::Entity& entity, const BondVisitor& visit);

} // namespace DataAccess::Context
