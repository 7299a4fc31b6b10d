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

} // namespace DataAccess::Exceptions
