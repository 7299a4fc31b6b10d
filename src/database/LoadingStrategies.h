#pragma once

namespace DataAccess::Enumerations {

/// How much a repository or a context loads.
enum LoadingStrategies : int {
    Complete = 0,     ///< Everything. The default of every configuration.
    WithoutImages = 1 ///< Stations come without their images; StationRepository::LoadImage() brings one on request.
};

} // namespace DataAccess::Enumerations
