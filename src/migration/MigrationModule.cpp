#include "migration/MigrationModule.h"

#include "database/DbException.h"
#include "database/Failure.h"

namespace DataAccess::Manager {

void MigrationModule::tellFailure(const char* function, const std::exception& error) const
{
    using Database::Failure;
    const QString reason = QString::fromLocal8Bit(error.what());
    qCWarning(category).noquote() << function << reason;
    const auto* const failed = dynamic_cast<const Exceptions::DbException*>(&error);
    const bool unavailable = failed != nullptr && failed->isUnavailable();
    Database::FailureWatch::report({reason, unavailable ? Failure::Kind::Unavailable : Failure::Kind::Statement});
}

} // namespace DataAccess::Manager
