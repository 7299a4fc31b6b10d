#pragma once

#include "manager/IEditorRepositoryManager.h"

/// The plain repository of each kind of the cable network, by the type of its entities.
namespace DataAccess::Context {

using Interfaces::IEditorRepositoryManager;

template <typename T>
std::shared_ptr<Interfaces::IRepository<T>> plainRepository(const IEditorRepositoryManager& manager) = delete;

#define DATAACCESS_PLAIN_REPOSITORY(Kind)                                                                              \
    template <>                                                                                                        \
    inline std::shared_ptr<Interfaces::IRepository<Cables::Entities::Kind>> plainRepository(                           \
        const IEditorRepositoryManager& manager)                                                                       \
    {                                                                                                                  \
        return manager.Kind##Repository();                                                                             \
    }

DATAACCESS_PLAIN_REPOSITORY(Point)
DATAACCESS_PLAIN_REPOSITORY(Rating)
DATAACCESS_PLAIN_REPOSITORY(Route)
DATAACCESS_PLAIN_REPOSITORY(Station)
DATAACCESS_PLAIN_REPOSITORY(Cable)
DATAACCESS_PLAIN_REPOSITORY(Phase)
DATAACCESS_PLAIN_REPOSITORY(Segment)
DATAACCESS_PLAIN_REPOSITORY(Insulation)
DATAACCESS_PLAIN_REPOSITORY(SegmentDetail)
DATAACCESS_PLAIN_REPOSITORY(SegmentType)
DATAACCESS_PLAIN_REPOSITORY(Owner)
DATAACCESS_PLAIN_REPOSITORY(Termination)
DATAACCESS_PLAIN_REPOSITORY(Switchgear)

#undef DATAACCESS_PLAIN_REPOSITORY

} // namespace DataAccess::Context
