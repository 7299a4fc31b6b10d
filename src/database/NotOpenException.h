#pragma once

#include "database/DbException.h"

namespace DataAccess::Exceptions {

/// The connection is closed and cannot be opened.
class DATAACCESS_EXPORT NotOpenException final : public DbException
{
public:
    using DbException::DbException;
    ~NotOpenException() override;

    Enumerations::ExceptionType type() const override;
};

} // namespace DataAccess::Exceptions
