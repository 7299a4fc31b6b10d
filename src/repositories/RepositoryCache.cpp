#include "repositories/RepositoryCache.h"

#include "database/LoggingCategories.h"

namespace DataAccess::Repositories {

void warnOfUnsuitableRepository(const char* function)
{
    qCWarning(lcDatabase) << function << "The repository behind the cache cannot answer this query";
}

} // namespace DataAccess::Repositories
