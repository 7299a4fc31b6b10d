#include "database/NotOpenException.h"

namespace DataAccess::Exceptions {

NotOpenException::NotOpenException(const char* message)
    : DbException(message, true)
{}

NotOpenException::~NotOpenException() = default;

Enumerations::ExceptionType NotOpenException::type() const
{
    return Enumerations::NotOpen;
}

} // namespace DataAccess::Exceptions
