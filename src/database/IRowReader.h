#pragma once

#include "database/DataAccessExport.h"
#include "database/IValueConverter.h"

#include <QString>

namespace DataAccess::Interfaces {

/**
 * The rows of one select, read forwards. Used inside the job that made it, and ended before the connection is closed;
 * while there are rows to come the connection serves no other statement.
 */
class DATAACCESS_EXPORT IRowReader
{
public:
    IRowReader() = default;
    IRowReader(const IRowReader&) = delete;
    IRowReader& operator=(const IRowReader&) = delete;
    virtual ~IRowReader();

    /// Moves to the next row; false after the last one, and when it cannot be had.
    virtual bool next() = 0;
    /// The values of the current row. Good until the reader ends.
    virtual const IValueConverter& row() const = 0;
    /// What ended the reading before the last row, in the driver's words; empty when nothing did.
    virtual QString error() const = 0;
    /// Whether that was because the database is locked or out of reach.
    virtual bool isUnavailable() const;
};

} // namespace DataAccess::Interfaces
