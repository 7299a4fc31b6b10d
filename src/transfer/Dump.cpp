#include "transfer/Dump.h"

#include "database/DbException.h"
#include "migration/editor/EditorMigrationManager.h"
#include "migration/pd/PdMigrationManager.h"
#include "transfer/private/TableRows.h"

#include <QIODevice>
#include <QJsonDocument>
#include <QJsonObject>

#include <optional>

namespace DataAccess::Transfer {

using Interfaces::IDatabase;

namespace {

constexpr int s_formatVersion = 1;
constexpr int s_rowsAtOnce = 1000;

const QString s_kind = QStringLiteral("kind");
const QString s_header = QStringLiteral("dataaccess-dump");
const QString s_end = QStringLiteral("end");

/// Not through QJsonDocument, which would sort the names.
QByteArray header()
{
    Manager::EditorMigrationManager editor;
    Manager::PdMigrationManager pd;
    return QStringLiteral("{\"kind\":\"%1\",\"version\":%2,\"%3\":%4,\"%5\":%6}\n")
        .arg(s_header)
        .arg(s_formatVersion)
        .arg(editor.feature())
        .arg(editor.ExpectedVersion())
        .arg(pd.feature())
        .arg(pd.ExpectedVersion())
        .toLatin1();
}

QByteArray end(qint64 rows)
{
    return QStringLiteral("{\"kind\":\"%1\",\"rows\":%2}\n").arg(s_end).arg(rows).toLatin1();
}

void write(QIODevice& file, const QByteArray& line)
{
    if (file.write(line) != line.size())
        throw std::runtime_error(file.errorString().toStdString());
}

/// Reads the lines of a dump one by one, and writes its rows.
class Loader
{
public:
    Loader(QIODevice& file, IDatabase& db)
        : m_file(file)
        , m_db(db)
    {}

    qint64 run(const Progress& progress)
    {
        if (m_file.readLine() != header())
            throw ContentError(QStringLiteral("This is no dump of the schema that this program works with"));
        while (!m_isEnded) {
            ++m_line;
            const QByteArray line = m_file.readLine();
            if (!line.endsWith('\n'))
                fail(QStringLiteral("the file is cut short"));
            take(line);
            if (m_line % s_rowsAtOnce == 0 && progress && !progress(m_file.pos(), m_file.size()))
                throw Cancelled();
        }
        if (!m_file.readLine().isEmpty())
            fail(QStringLiteral("there is more behind the end"));
        return m_rows;
    }

private:
    [[noreturn]] void fail(const QString& what) const
    {
        throw ContentError(QStringLiteral("Line %1: %2").arg(m_line).arg(what));
    }

    void take(const QByteArray& line)
    {
        const QJsonObject object = QJsonDocument::fromJson(line).object();
        const QString kind = object.value(s_kind).toString();
        if (kind == s_end) {
            finishTable();
            m_isEnded = true;
            if (object.value(QStringLiteral("rows")).toDouble(-1) != static_cast<double>(m_rows))
                fail(QStringLiteral("rows are missing"));
            return;
        }
        if (m_table == nullptr || kind != m_table->name)
            beginTable(kind);
        if (object.size() != m_table->columns.size() + 1)
            fail(QStringLiteral("it has other columns than %1").arg(kind));
        for (int i = 0; i < m_row.size(); ++i) {
            const SchemaColumn& column = m_table->columns.at(i);
            const QJsonValue value = object.value(column.name);
            if (value.isUndefined() || !m_row[i].read(value, column))
                fail(QStringLiteral("the value of %1 is missing or of another kind").arg(column.name));
        }
        m_writer->write(m_row);
        ++m_rows;
    }

    void beginTable(const QString& kind)
    {
        finishTable();
        m_table = schemaTable(kind);
        if (m_table == nullptr)
            fail(QStringLiteral("it is no row of any table"));
        m_row.resize(m_table->columns.size());
        m_writer.emplace(m_db, *m_table);
    }

    void finishTable()
    {
        if (m_writer)
            m_writer->finish();
        m_writer.reset();
    }

    QIODevice& m_file;
    IDatabase& m_db;
    const SchemaTable* m_table = nullptr;
    std::optional<TableWriter> m_writer;
    Row m_row;
    qint64 m_line = 1;
    qint64 m_rows = 0;
    bool m_isEnded = false;
};

} // namespace

qint64 dump(IDatabase& db, QIODevice& file, const Progress& progress)
{
    const Snapshot snapshot(db);
    const qint64 total = progress ? rowCount(db) : 0;
    qint64 rows = 0;
    write(file, header());
    for (const SchemaTable& table : schemaTables()) {
        RowLines lines(table);
        TableReader reader(db, table);
        while (reader.next()) {
            write(file, lines.line(reader.row()));
            if (++rows % s_rowsAtOnce == 0 && progress && !progress(rows, total))
                throw Cancelled();
        }
    }
    write(file, end(rows));
    return rows;
}

qint64 load(QIODevice& file, IDatabase& db, bool isReplacing, const Progress& progress)
{
    Database::Transaction transaction = db.WriteTransaction();
    if (!transaction.isOpen())
        throw Exceptions::ExecutionException("the transaction cannot be started", true);
    if (isReplacing)
        deleteAllRows(db);
    const qint64 rows = Loader(file, db).run(progress);
    if (!transaction.commit())
        throw Exceptions::ExecutionException("the transaction cannot be committed");
    return rows;
}

} // namespace DataAccess::Transfer
