#pragma once

namespace QOR::Entities::Enumerations {

/**
 * Life-cycle state of an entity object. Deleted and Snapshot are stored, in the columns `deleted` and `snap` of every
 * entity table; the others describe the object in memory only.
 */
enum EntityState : int {
    Normal = 0,   ///< As it is stored.
    New = 1,      ///< Made by the application and never stored: what a default-constructed entity is.
    Modified = 2, ///< Loaded or stored, and changed since.
    Deleted = 3,  ///< Marked deleted; its row stays.
    Snapshot = 5  ///< A frozen copy of another entity's earlier content.
};

} // namespace QOR::Entities::Enumerations
