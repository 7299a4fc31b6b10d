#include "database/DbException.h"

namespace DataAccess::Exceptions {

DbException::DbException(const char* message)
    : std::runtime_error(message)
{}

DbException::DbException(const char* message, bool isUnavailable)
    : std::runtime_error(message)
    , m_isUnavailable(isUnavailable)
{}

DbException::~DbException() = default;

const char* DbException::what() const noexcept
{
    return std::runtime_error::what();
}

ExecutionException::~ExecutionException() = default;

Enumerations::ExceptionType ExecutionException::type() const
{
    return Enumerations::Execution;
}

InvalidDbException::~InvalidDbException() = default;

Enumerations::ExceptionType InvalidDbException::type() const
{
    return Enumerations::InvalidDb;
}

NotOpenException::NotOpenException(const char* message)
    : DbException(message, true)
{}

NotOpenException::~NotOpenException() = default;

Enumerations::ExceptionType NotOpenException::type() const
{
    return Enumerations::NotOpen;
}

} // namespace DataAccess::Exceptions
