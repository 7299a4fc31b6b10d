#pragma once

#include <QUuid>

namespace DataAccess::Manager {
class PdRepositoryManager;
}

/**
 * Stores a partial-discharge test of the cable @p cable, made at the station @p station: a task with a report, its
 * file, overviews, events and summary. Does nothing when the database has tasks already. Throws std::runtime_error when
 * something cannot be stored.
 */
void storeSampleMeasurement(DataAccess::Manager::PdRepositoryManager& manager, const QUuid& cable,
                            const QUuid& station);
