#include "database/NotOpenException.h"

namespace DataAccess::Exceptions {

NotOpenException::~NotOpenException() = default;

Enumerations::ExceptionType NotOpenException::type() const
{
    return Enumerations::NotOpen;
}

} // namespace DataAccess::Exceptions
