#pragma once

#include "transfer/Progress.h"

class QIODevice;

namespace DataAccess::Interfaces {
class IDatabase;
}

namespace DataAccess::Transfer {

/**
 * Writes all rows of the schema to @p file as lines of JSON: a header with the versions, a line a row with the table as
 * its "kind", and an end with the number of rows. Equal databases give equal bytes. Throws Cancelled, ContentError,
 * DbException, and std::runtime_error when the file cannot be written.
 */
DATAACCESS_EXPORT qint64 dump(Interfaces::IDatabase& db, QIODevice& file, const Progress& progress = {});

/**
 * Writes the rows of a dump into a database with none, in one transaction. @p isReplacing deletes those it has, in the
 * same transaction. @p progress is told bytes. Gives the number of rows. Throws Cancelled, DbException, and
 * ContentError for a line that is no row of this schema and for a file that is cut short.
 */
DATAACCESS_EXPORT qint64 load(QIODevice& file, Interfaces::IDatabase& db, bool isReplacing,
                              const Progress& progress = {});

} // namespace DataAccess::Transfer
