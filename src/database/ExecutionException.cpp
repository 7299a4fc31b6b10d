#include "database/ExecutionException.h"

namespace DataAccess::Exceptions {

ExecutionException::~ExecutionException() = default;

Enumerations::ExceptionType ExecutionException::type() const
{
    return Enumerations::Execution;
}

} // namespace DataAccess::Exceptions
