#pragma once

#include <QtGlobal>

namespace DataAccess::Manager {

class MigrationStep;

/// What the tables of the cable network tell of their version, when the stored one may be damaged.
namespace VersionEvidence {

/**
 * Throws, with what is wrong and what to do, when rows would be discarded on the way from @p version and the database
 * cannot be at it: it is 0 although there was a version once, or there are rows in what only later steps create.
 */
void require(MigrationStep& step, quint32 version);

} // namespace VersionEvidence

} // namespace DataAccess::Manager
