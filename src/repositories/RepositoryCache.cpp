#include "repositories/RepositoryCache.h"

#include "database/LoggingCategories.h"

namespace DataAccess::Repositories {

void warnOfUnsuitableRepository(const char* function)
{
    const char* const reason = "The repository behind the cache cannot answer this query";
    qCWarning(lcDatabase) << function << reason;
    Database::FailureWatch::report({QString::fromLatin1(reason), Database::Failure::Kind::Statement, {}, {}});
}

} // namespace DataAccess::Repositories
