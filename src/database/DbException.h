#pragma once

#include "database/DataAccessExport.h"
#include "database/ExceptionType.h"

#include <stdexcept>

namespace DataAccess::Exceptions {

/// A failure of the SQL layer; what() is the text of the database driver, in the local 8-bit encoding.
class DATAACCESS_EXPORT DbException : public std::runtime_error
{
public:
    /// Copies @p message.
    explicit DbException(const char* message);
    /// @p isUnavailable says that the database is locked or out of reach.
    DbException(const char* message, bool isUnavailable);
    DbException(const DbException&) = default;
    DbException& operator=(const DbException&) = default;
    ~DbException() override;

    /// The text, never null.
    const char* what() const noexcept override;
    /// Which kind of failure this is.
    virtual Enumerations::ExceptionType type() const = 0;

    /// Whether the database is locked or out of reach, so that other statements would fail too, each after its
    /// time-out.
    bool isUnavailable() const { return m_isUnavailable; }

private:
    bool m_isUnavailable = false;
};

} // namespace DataAccess::Exceptions
