#pragma once

#include "database/DbException.h"

namespace DataAccess::Exceptions {

/// A statement failed, or its result could not be used.
class DATAACCESS_EXPORT ExecutionException final : public DbException
{
public:
    using DbException::DbException;
    ~ExecutionException() override;

    /// See DbException.
    Enumerations::ExceptionType type() const override;
};

} // namespace DataAccess::Exceptions
