#pragma once

#include "transfer/Progress.h"

#include <QByteArray>
#include <QString>
#include <QVector>

namespace DataAccess::Interfaces {
class IDatabase;
}

namespace DataAccess::Transfer {

struct SchemaTable;

/// What a table holds: the number of its rows, and the SHA-256 of their lines in a dump.
struct TableDigest
{
    QString table;     ///< Name of the table.
    qint64 rows = 0;   ///< Number of its rows.
    QByteArray sha256; ///< Digest of their lines, 32 bytes.
};

/// The digests of all tables of the schema, as they are at one moment. @p progress is told the rows read.
DATAACCESS_EXPORT QVector<TableDigest> digests(Interfaces::IDatabase& db, const Progress& progress = {});

/// Whether a copy into @p db was begun and not ended.
DATAACCESS_EXPORT bool hasUnfinishedCopy(Interfaces::IDatabase& db);

/**
 * Copies all rows of the schema from one database into another that has the same schema and none of its rows, whatever
 * the backends: ids, flags, time stamps, texts, images and files as they are. Memory does not grow with the tables.
 *
 * Rows are kept as they are copied, so that a copy that was broken off at any moment can be gone on with. Until it is
 * whole, and compared with the original, the target says that it is not: see hasUnfinishedCopy().
 */
class DATAACCESS_EXPORT DatabaseCopy
{
public:
    /// Both must outlive the copy, which is made on the calling thread.
    DatabaseCopy(Interfaces::IDatabase& from, Interfaces::IDatabase& to);

    /**
     * Copies what the target does not have yet and compares the two; a target with rows that no unfinished copy has
     * brought is only compared. @p progress is told the rows copied and compared.
     * Throws Cancelled, ContentError when the two differ in the end or a row cannot be understood, and DbException.
     */
    QVector<TableDigest> run(const Progress& progress = {});

private:
    TableDigest copyTable(const SchemaTable& table);
    void advance(qint64 rows);

    Interfaces::IDatabase& m_from;
    Interfaces::IDatabase& m_to;
    Progress m_progress;
    qint64 m_done = 0;
    qint64 m_total = 0;
};

} // namespace DataAccess::Transfer
