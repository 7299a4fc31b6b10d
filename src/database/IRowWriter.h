#pragma once

#include "database/DataAccessExport.h"
#include "database/IValueConverter.h"

namespace DataAccess::Interfaces {

/**
 * One statement that is run for many rows, prepared once. Used inside one job, in a transaction, and ended before the
 * connection is closed.
 * Rows may be sent ahead, by one writer at a time: a row is written when the writer has said so, at the latest after
 * finish(). A row that fails throws ExecutionException with the driver's text; no row after it is written. A writer
 * that ends before finish() still waits for the rows it has sent.
 */
class DATAACCESS_EXPORT IRowWriter
{
public:
    IRowWriter() = default;
    IRowWriter(const IRowWriter&) = delete;
    IRowWriter& operator=(const IRowWriter&) = delete;
    virtual ~IRowWriter();

    /// Where the values of the next row are bound. What is not bound again keeps its value. Good until the writer ends.
    virtual IValueConverter& values() = 0;
    /// Runs the statement with the values bound, now or with rows to come. Throws ExecutionException for any row sent.
    virtual void run() = 0;
    /// Waits for all rows sent, and frees the connection for other statements. Throws ExecutionException.
    virtual void finish() = 0;

    /// Whether the statement has changed a row of the table: an update of a row that is not there changes none. Holds
    /// for the row that `written` is being called for, before another statement runs; true where that is not known.
    virtual bool touchedRow() const;
};

} // namespace DataAccess::Interfaces
