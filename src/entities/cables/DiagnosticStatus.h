#pragma once

namespace Cables::Entities::Enumerations {

/// What the diagnostics of a cable ask for, stored as its number. A number that has no name here is kept as it is.
enum DiagnosticStatus : int {
    NotDiagnosed = 0,     ///< No diagnostic measurement has been judged yet.
    NoActionRequired = 1, ///< In good condition.
    FurtherStudy = 2,     ///< To be watched, or measured again.
    ActionRequired = 3    ///< To be repaired or replaced.
};

} // namespace Cables::Entities::Enumerations
