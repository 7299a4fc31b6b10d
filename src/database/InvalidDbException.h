#pragma once

#include "database/DbException.h"

namespace DataAccess::Exceptions {

/// The connection handle is invalid: an unknown driver, or a set-up that failed.
class DATAACCESS_EXPORT InvalidDbException final : public DbException
{
public:
    using DbException::DbException;
    ~InvalidDbException() override;

    /// See DbException.
    Enumerations::ExceptionType type() const override;
};

} // namespace DataAccess::Exceptions
