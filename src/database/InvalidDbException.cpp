#include "database/InvalidDbException.h"

namespace DataAccess::Exceptions {

InvalidDbException::~InvalidDbException() = default;

Enumerations::ExceptionType InvalidDbException::type() const
{
    return Enumerations::InvalidDb;
}

} // namespace DataAccess::Exceptions
