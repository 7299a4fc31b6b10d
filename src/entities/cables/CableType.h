#pragma once

namespace Cables::Entities::Enumerations {

/// Build of a cable, stored as its number. A number that has no name here is kept as it is.
enum CableType : int {
    UnspecifiedCable = 0, ///< Nobody has said: what cables stored before there was a type have.
    SingleCoreCable = 1,  ///< One conductor, and so one cable a phase.
    ThreeCoreCable = 2    ///< The three phases in one sheath.
};

} // namespace Cables::Entities::Enumerations
