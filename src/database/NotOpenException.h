#pragma once

#include "database/DbException.h"

namespace DataAccess::Exceptions {

/// The connection is closed and cannot be opened.
class DATAACCESS_EXPORT NotOpenException final : public DbException
{
public:
    using DbException::DbException;
    /// Says that the database is out of reach.
    explicit NotOpenException(const char* message);
    ~NotOpenException() override;

    /// See DbException.
    Enumerations::ExceptionType type() const override;
};

} // namespace DataAccess::Exceptions
