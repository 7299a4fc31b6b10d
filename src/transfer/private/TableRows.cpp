#include "transfer/private/TableRows.h"

#include "database/DbException.h"
#include "database/Transaction.h"
#include "database/backends/Backend.h"

#include <QSqlQuery>
#include <QVariant>

namespace DataAccess::Transfer {

using Database::Backend;
using Interfaces::IDatabase;

namespace {

constexpr int s_rowsAtOnce = 2000;
constexpr int s_largeRowsAtOnce = 4;

QString selectOf(IDatabase& db, const SchemaTable& table)
{
    const Backend& backend = Backend::of(db);
    // Texts by their bytes and NULL first: an order that all backends understand alike. What is of another kind than
    // its column is told with each row, as looking for it beforehand would take a pass of its own.
    const QString foreign = foreignTypeCondition(db, table);
    QStringList order;
    for (const SchemaColumn& column : table.columns) {
        if (table.key.isEmpty() || column.name == table.key)
            order.append(quoted(column.name) + (column.kind == Enumerations::Text ? backend.byteOrder() : QString()) +
                         backend.nullsFirst());
    }
    return QStringLiteral("SELECT %1%2 FROM %3 ORDER BY %4")
        .arg(table.columnList(), foreign.isEmpty() ? QString() : QLatin1String(", ") + foreign, quoted(table.name),
             order.join(QLatin1String(", ")));
}

QString placeOf(const SchemaTable& table, const Row& row)
{
    if (table.key.isEmpty())
        return table.name;
    const StoredValue& key = row.front();
    return table.name + QLatin1Char(' ') + (table.hasUuid() ? key.text : QString::number(key.integer));
}

} // namespace

Cancelled::Cancelled()
    : std::runtime_error("cancelled")
{}

Cancelled::~Cancelled() = default;

ContentError::ContentError(const QString& text)
    : std::runtime_error(text.toUtf8().constData())
{}

ContentError::~ContentError() = default;

RowLines::RowLines(const SchemaTable& table)
    : m_table(table)
{
    for (const SchemaColumn& column : table.columns) {
        const QByteArray before = m_names.isEmpty() ? "{\"kind\":\"" + table.name.toLatin1() + '"' : QByteArray();
        m_names.append(before + ",\"" + column.name.toLatin1() + "\":");
    }
}

const QByteArray& RowLines::line(const Row& row)
{
    m_line.resize(0); // keeps the memory
    for (int i = 0; i < row.size(); ++i) {
        m_line.append(m_names.at(i));
        row.at(i).appendTo(m_line, m_table.columns.at(i));
    }
    m_line.append("}\n");
    return m_line;
}

Snapshot::Snapshot(IDatabase& db)
    : m_transaction(db.Transaction())
{
    if (!m_transaction.isOpen())
        throw Exceptions::NotOpenException("the transaction cannot be started");
    const QString snapshot = Backend::of(db).snapshot();
    if (!snapshot.isEmpty())
        db.Exec(snapshot);
}

TableReader::TableReader(IDatabase& db, const SchemaTable& table)
    : m_db(db)
    , m_table(table)
    , m_row(table.columns.size())
    , m_tellsForeignTypes(Backend::of(db).hasLooseColumns())
{
    const QString declaration = Backend::of(db).cursorDeclaration();
    const QString select = selectOf(db, table);
    m_hasCursor = !declaration.isEmpty();
    if (m_hasCursor) {
        db.Exec(declaration.arg(QStringLiteral("dataaccess_rows")) + select);
        fetch();
    } else {
        m_reader = db.Read(select);
    }
}

TableReader::~TableReader()
{
    m_reader.reset();
    if (!m_hasCursor)
        return;
    try {
        m_db.Exec(QStringLiteral("CLOSE dataaccess_rows"));
    } catch (const Exceptions::DbException&) {
        // The transaction has failed, and the cursor ends with it.
    }
}

void TableReader::fetch()
{
    const int rows = m_table.hasBytes() ? s_largeRowsAtOnce : s_rowsAtOnce;
    m_reader.reset();
    m_reader = m_db.Read(QStringLiteral("FETCH FORWARD %1 FROM dataaccess_rows").arg(rows));
    m_fetched = 0;
}

bool TableReader::next()
{
    bool onRow = m_reader->next();
    if (!onRow && m_hasCursor && m_fetched > 0 && m_reader->error().isEmpty()) {
        fetch();
        onRow = m_reader->next();
    }
    if (!onRow) {
        const QString error = m_reader->error();
        if (!error.isEmpty())
            throw Exceptions::ExecutionException(error.toLocal8Bit().constData());
        return false;
    }
    ++m_fetched;
    if (m_tellsForeignTypes && m_reader->row().toBool(m_row.size())) {
        m_row.front().read(m_reader->row(), 0, m_table.columns.front());
        throw ContentError(placeOf(m_table, m_row) + QStringLiteral(": a value is not of the kind of its column"));
    }
    for (int i = 0; i < m_row.size(); ++i) {
        if (!m_row[i].read(m_reader->row(), i, m_table.columns.at(i)))
            throw ContentError(QStringLiteral("%1: the value of the column %2 does not convert")
                                   .arg(placeOf(m_table, m_row), m_table.columns.at(i).name));
    }
    return true;
}

TableWriter::TableWriter(IDatabase& db, const SchemaTable& table)
    : m_table(table)
{
    for (const SchemaColumn& column : table.columns)
        m_placeholders.append(QLatin1Char(':') + column.name);
    m_writer = db.Write(QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                            .arg(quoted(table.name), table.columnList(), m_placeholders.join(QLatin1String(", "))),
                        [] {});
}

void TableWriter::write(const Row& row)
{
    for (int i = 0; i < row.size(); ++i)
        row.at(i).bind(m_writer->values(), m_placeholders.at(i), m_table.columns.at(i));
    m_writer->run();
}

void TableWriter::finish()
{
    m_writer->finish();
}

QVariant scalar(IDatabase& db, const QString& select)
{
    QSqlQuery query = db.Exec(select);
    return query.next() ? query.value(0) : QVariant();
}

qint64 rowCount(IDatabase& db, const QString& table)
{
    return db.Tables().contains(table)
               ? scalar(db, QStringLiteral("SELECT count(*) FROM ") + quoted(table)).toLongLong()
               : 0;
}

qint64 rowCount(IDatabase& db)
{
    const QStringList tables = db.Tables();
    qint64 rows = 0;
    for (const SchemaTable& table : schemaTables()) {
        if (tables.contains(table.name))
            rows += scalar(db, QStringLiteral("SELECT count(*) FROM ") + quoted(table.name)).toLongLong();
    }
    return rows;
}

void deleteAllRows(IDatabase& db)
{
    // What refers to others goes before them.
    const QVector<SchemaTable>& tables = schemaTables();
    for (auto table = tables.rbegin(); table != tables.rend(); ++table)
        db.Exec(QStringLiteral("DELETE FROM ") + quoted(table->name));
}

QString foreignTypeCondition(IDatabase& db, const SchemaTable& table)
{
    if (!Backend::of(db).hasLooseColumns())
        return {};
    QStringList terms;
    for (const SchemaColumn& column : table.columns) {
        QString allowed = QStringLiteral("'text', 'null'");
        if (column.kind == Enumerations::Integer || column.kind == Enumerations::Boolean)
            allowed = QStringLiteral("'integer', 'null'");
        else if (column.kind == Enumerations::Numeric)
            allowed = QStringLiteral("'real', 'integer', 'null'");
        else if (column.kind == Enumerations::ByteArray)
            continue;
        terms.append(QStringLiteral("typeof(%1) NOT IN (%2)").arg(quoted(column.name), allowed));
    }
    return terms.join(QLatin1String(" OR "));
}

} // namespace DataAccess::Transfer
