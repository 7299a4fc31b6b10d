#pragma once

#include "database/LoadingStrategies.h"
#include "repositories/cables/CableRepository.h"
#include "repositories/cables/InsulationRepository.h"
#include "repositories/cables/OwnerRepository.h"
#include "repositories/cables/PhaseRepository.h"
#include "repositories/cables/PointRepository.h"
#include "repositories/cables/RatingRepository.h"
#include "repositories/cables/RouteRepository.h"
#include "repositories/cables/SegmentDetailRepository.h"
#include "repositories/cables/SegmentRepository.h"
#include "repositories/cables/SegmentTypeRepository.h"
#include "repositories/cables/StationRepository.h"
#include "repositories/cables/SwitchgearRepository.h"
#include "repositories/cables/TerminationRepository.h"

/// The repositories of the cable network in one database.
struct Repositories
{
    explicit Repositories(DataAccess::Database::DbWorker* worker)
        : cables(worker, DataAccess::Enumerations::Complete, nullptr)
        , insulations(worker, DataAccess::Enumerations::Complete, nullptr)
        , owners(worker, DataAccess::Enumerations::Complete, nullptr)
        , phases(worker, DataAccess::Enumerations::Complete, nullptr)
        , points(worker, DataAccess::Enumerations::Complete, nullptr)
        , ratings(worker, DataAccess::Enumerations::Complete, nullptr)
        , routes(worker, DataAccess::Enumerations::Complete, nullptr)
        , details(worker, DataAccess::Enumerations::Complete, nullptr)
        , segments(worker, DataAccess::Enumerations::Complete, nullptr)
        , segmentTypes(worker, DataAccess::Enumerations::Complete, nullptr)
        , stations(worker, DataAccess::Enumerations::Complete, nullptr)
        , switchgears(worker, DataAccess::Enumerations::Complete, nullptr)
        , terminations(worker, DataAccess::Enumerations::Complete, nullptr)
    {}

    DataAccess::Repositories::CableRepository cables;
    DataAccess::Repositories::InsulationRepository insulations;
    DataAccess::Repositories::OwnerRepository owners;
    DataAccess::Repositories::PhaseRepository phases;
    DataAccess::Repositories::PointRepository points;
    DataAccess::Repositories::RatingRepository ratings;
    DataAccess::Repositories::RouteRepository routes;
    DataAccess::Repositories::SegmentDetailRepository details;
    DataAccess::Repositories::SegmentRepository segments;
    DataAccess::Repositories::SegmentTypeRepository segmentTypes;
    DataAccess::Repositories::StationRepository stations;
    DataAccess::Repositories::SwitchgearRepository switchgears;
    DataAccess::Repositories::TerminationRepository terminations;
};
