#include "migration/IMigrationManager.h"

namespace DataAccess::Interfaces {

IMigrationManager::~IMigrationManager() = default;

} // namespace DataAccess::Interfaces
