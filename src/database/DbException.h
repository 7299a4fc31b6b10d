#pragma once

#include "database/DataAccessExport.h"

#include <stdexcept>

namespace DataAccess::Enumerations {

/// Which kind of failure a DbException reports.
enum ExceptionType : int { NotOpen = 1, Execution = 2, InvalidDb = 3 };

} // namespace DataAccess::Enumerations

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

    const char* what() const noexcept override;
    virtual Enumerations::ExceptionType type() const = 0;

    /// Whether the database is locked or out of reach, so that other statements would fail too, each after its
    /// time-out.
    bool isUnavailable() const { return m_isUnavailable; }

private:
    bool m_isUnavailable = false;
};

/// A statement failed, or its result could not be used.
class DATAACCESS_EXPORT ExecutionException final : public DbException
{
public:
    using DbException::DbException;
    ~ExecutionException() override;

    Enumerations::ExceptionType type() const override;
};

/// The connection handle is invalid: an unknown driver, or a set-up that failed.
class DATAACCESS_EXPORT InvalidDbException final : public DbException
{
public:
    using DbException::DbException;
    ~InvalidDbException() override;

    Enumerations::ExceptionType type() const override;
};

/// The connection is closed and cannot be opened.
class DATAACCESS_EXPORT NotOpenException final : public DbException
{
public:
    using DbException::DbException;
    /// Says that the database is out of reach.
    explicit NotOpenException(const char* message);
    ~NotOpenException() override;

    Enumerations::ExceptionType type() const override;
};

} // namespace DataAccess::Exceptions
