#include "transfer/DatabaseCopy.h"

#include "database/DbException.h"
#include "transfer/private/TableRows.h"

#include <QCryptographicHash>
#include <QSqlQuery>

#include <future>
#include <optional>

namespace DataAccess::Transfer {

using Exceptions::ExecutionException;
using Interfaces::IDatabase;

namespace {

const QString s_marker = QStringLiteral("dataaccess_copy");

/// Rows between two looks at the progress, and rows and bytes of one transaction.
constexpr int s_rowsAtOnce = 1000;
constexpr int s_rowsKept = 50000;
constexpr qint64 s_bytesKept = 32 << 20;

/// The SHA-256 of the lines of a table, which takes a thread of its own as long as reading and writing them.
class Digest
{
public:
    void add(const QByteArray& line)
    {
        m_lines.append(line);
        if (m_lines.size() >= s_bytesAtOnce)
            hash();
    }

    QByteArray result()
    {
        hash();
        m_running.get();
        return m_hash.result();
    }

private:
    static constexpr int s_bytesAtOnce = 1 << 20;

    /// Lets the thread work on the lines that there are, once it has done with those before.
    void hash()
    {
        if (m_running.valid())
            m_running.get();
        m_running = std::async(std::launch::async, [this, lines = m_lines] { m_hash.addData(lines); });
        m_lines = QByteArray();
        m_lines.reserve(s_bytesAtOnce + (s_bytesAtOnce >> 2));
    }

    QCryptographicHash m_hash{QCryptographicHash::Sha256};
    QByteArray m_lines;
    std::future<void> m_running; // ends before what it works on
};

/// One transaction after the other, of as many rows as are worth one.
class Batches
{
public:
    Batches(IDatabase& db, const SchemaTable& table)
        : m_db(db)
        , m_table(table)
    {}

    void write(const Row& row, qint64 bytes)
    {
        if (!m_transaction) {
            m_transaction.emplace(m_db.WriteTransaction());
            if (!m_transaction->isOpen())
                throw ExecutionException("the transaction cannot be started", true);
            m_writer.emplace(m_db, m_table);
        }
        m_writer->write(row);
        m_bytes += bytes;
        if (++m_rows >= s_rowsKept || m_bytes > s_bytesKept)
            keep();
    }

    void keep()
    {
        if (!m_transaction)
            return;
        m_writer->finish();
        m_writer.reset();
        if (!m_transaction->commit())
            throw ExecutionException("the transaction cannot be committed");
        m_transaction.reset();
        m_rows = 0;
        m_bytes = 0;
    }

private:
    IDatabase& m_db;
    const SchemaTable& m_table;
    std::optional<Database::Transaction> m_transaction;
    std::optional<TableWriter> m_writer;
    int m_rows = 0;
    qint64 m_bytes = 0;
};

TableDigest digestOf(IDatabase& db, const SchemaTable& table, const std::function<void(qint64)>& advance)
{
    TableDigest digest{table.name, 0, {}};
    Digest hash;
    RowLines lines(table);
    TableReader reader(db, table);
    while (reader.next()) {
        hash.add(lines.line(reader.row()));
        if (++digest.rows % s_rowsAtOnce == 0)
            advance(s_rowsAtOnce);
    }
    advance(digest.rows % s_rowsAtOnce);
    digest.sha256 = hash.result();
    return digest;
}

} // namespace

bool hasUnfinishedCopy(IDatabase& db)
{
    return db.Tables().contains(s_marker);
}

QVector<TableDigest> digests(IDatabase& db, const Progress& progress)
{
    const Snapshot snapshot(db);
    const qint64 total = progress ? rowCount(db) : 0;
    qint64 done = 0;
    QVector<TableDigest> all;
    for (const SchemaTable& table : schemaTables()) {
        all.append(digestOf(db, table, [&](qint64 rows) {
            done += rows;
            if (progress && !progress(done, total))
                throw Cancelled();
        }));
    }
    return all;
}

DatabaseCopy::DatabaseCopy(IDatabase& from, IDatabase& to)
    : m_from(from)
    , m_to(to)
{}

void DatabaseCopy::advance(qint64 rows)
{
    m_done += rows;
    if (m_progress && !m_progress(m_done, m_total))
        throw Cancelled();
}

TableDigest DatabaseCopy::copyTable(const SchemaTable& table)
{
    TableDigest digest{table.name, 0, {}};
    Digest hash;
    RowLines lines(table);
    TableReader reader(m_from, table);
    // Rows are copied in order, so that those of a copy that was broken off are the first ones.
    const qint64 present = rowCount(m_to, table.name);
    Batches batches(m_to, table);
    while (reader.next()) {
        const QByteArray& line = lines.line(reader.row());
        hash.add(line);
        if (digest.rows >= present)
            batches.write(reader.row(), line.size());
        if (++digest.rows % s_rowsAtOnce != 0)
            continue;
        try {
            advance(s_rowsAtOnce);
        } catch (const Cancelled&) {
            batches.keep();
            throw;
        }
    }
    batches.keep();
    advance(digest.rows % s_rowsAtOnce);
    digest.sha256 = hash.result();
    return digest;
}

QVector<TableDigest> DatabaseCopy::run(const Progress& progress)
{
    m_progress = progress;
    const Snapshot snapshot(m_from);
    m_total = 2 * rowCount(m_from);
    m_done = 0;
    const bool isUnfinished = hasUnfinishedCopy(m_to);
    // Rows that no copy has brought may be anybody's: nothing is added to them.
    const bool isForeign = !isUnfinished && rowCount(m_to) > 0;
    if (!isUnfinished && !isForeign)
        m_to.Exec(QStringLiteral("CREATE TABLE %1 (begun TEXT)").arg(s_marker));
    QVector<TableDigest> copied;
    for (const SchemaTable& table : schemaTables())
        copied.append(isForeign ? digestOf(m_from, table, [this](qint64 rows) { advance(rows); }) : copyTable(table));
    const qint64 rows = m_done;
    const QVector<TableDigest> found = digests(m_to, [&](qint64 done, qint64) {
        m_done = rows + done;
        return !m_progress || m_progress(m_done, m_total);
    });
    QStringList different;
    for (int i = 0; i < copied.size(); ++i) {
        if (copied.at(i).rows != found.at(i).rows || copied.at(i).sha256 != found.at(i).sha256)
            different.append(copied.at(i).table);
    }
    if (!different.isEmpty())
        throw ContentError(
            QStringLiteral("the copy differs from the original in %1").arg(different.join(QStringLiteral(", "))));
    if (hasUnfinishedCopy(m_to))
        m_to.Exec(QStringLiteral("DROP TABLE ") + s_marker);
    return copied;
}

} // namespace DataAccess::Transfer
