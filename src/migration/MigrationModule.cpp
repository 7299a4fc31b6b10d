#include "migration/MigrationModule.h"

#include "database/DbException.h"
#include "database/Failure.h"

namespace DataAccess::Manager {

void MigrationModule::tellFailure(const char* function, const std::exception& error) const
{
    using Database::Failure;
    const QString reason = QString::fromLocal8Bit(error.what());
    qCWarning(category).noquote() << function << reason;
    Failure failure;
    failure.reason = reason;
    const auto* const failed = dynamic_cast<const Exceptions::DbException*>(&error);
    if (failed != nullptr && failed->isUnavailable())
        failure.kind = Failure::Kind::Unavailable;
    Database::FailureWatch::report(failure);
}

} // namespace DataAccess::Manager
