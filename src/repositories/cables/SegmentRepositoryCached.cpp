#include "repositories/cables/SegmentRepositoryCached.h"

#include "repositories/cables/SegmentRepository.h"

namespace DataAccess::Repositories {

using Cables::Entities::Segment;

SegmentRepositoryCached::SegmentRepositoryCached(const std::shared_ptr<Interfaces::IRepository<Segment>>& repository)
    : RepositoryCache(repository)
{}

SegmentRepositoryCached::~SegmentRepositoryCached() = default;

SegmentRepositoryCached::Entities SegmentRepositoryCached::GetByPhaseId(QUuid id)
{
    const auto matches = [&id](const Segment& segment) { return segment.PhaseId() == id; };
    const auto query = [&id](SegmentRepository& segments) { return segments.GetByPhaseId(id); };
    return searchOrAsk<SegmentRepository>(matches, query, Q_FUNC_INFO);
}

} // namespace DataAccess::Repositories
