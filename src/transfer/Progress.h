#pragma once

#include "database/DataAccessExport.h"

#include <QString>

#include <functional>
#include <stdexcept>

namespace DataAccess::Transfer {

/// How much of a long operation is done; an operation asks between two parts. False ends it at the next safe point.
using Progress = std::function<bool(qint64 done, qint64 total)>;

/// Thrown when a progress has answered false.
class DATAACCESS_EXPORT Cancelled : public std::runtime_error
{
public:
    Cancelled();
    ~Cancelled() override;
};

/// Thrown when what is stored cannot be understood. The text names table, row and column, never a value.
class DATAACCESS_EXPORT ContentError : public std::runtime_error
{
public:
    explicit ContentError(const QString& text);
    ~ContentError() override;
};

} // namespace DataAccess::Transfer
