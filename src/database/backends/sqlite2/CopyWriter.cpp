#include "database/backends/sqlite2/CopyWriter.h"

#include "database/backends/SqliteFamily.h"
#include "database/backends/sqlite2/FileImage.h"
#include "database/backends/sqlite2/LegacyFileError.h"
#include "database/backends/sqlite2/LegacyText.h"
#include "database/backends/sqlite2/SqlTokenizer.h"

#include <QByteArrayList>
#include <QLoggingCategory>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>

namespace DataAccess::Database::Sqlite2 {

namespace {

// Of its own rather than the library's, so that this folder can be linked without the rest.
Q_LOGGING_CATEGORY(lcCopyWriter, "qor.database")

// Rows are written in their order, which takes hardly any cache. Indexes are not: they want one in proportion to the
// file, where more costs memory, less time.
constexpr quint32 rowCache = 200;
constexpr quint32 smallestIndexCache = 2000;

QByteArray quotedName(const QByteArray& name)
{
    return LegacyTable::quotedName(name);
}

/// One of the names by which SQLite 3 knows the row id, and the table no column; empty when columns have them all.
QByteArray rowIdName(const LegacyTable& table)
{
    for (const char* const name : {"rowid", "oid", "_rowid_"}) {
        const bool taken = std::any_of(table.columns.begin(), table.columns.end(), [name](const LegacyColumn& column) {
            return LegacyText::sameWord(column.name, name);
        });
        if (!taken)
            return name;
    }
    return {};
}

/// Whether the statement does what its row in the schema says. Others a damaged file could make us run.
bool makesItsObject(const LegacyFile::Object& object)
{
    SqlTokenizer tokens(object.sql);
    if (!tokens.next().isWord("CREATE"))
        return false;
    if (object.type == "index" && tokens.peek().isWord("UNIQUE"))
        tokens.next();
    return tokens.next().isWord(object.type);
}

} // namespace

CopyWriter::CopyWriter(const QSqlDatabase& connection)
    : m_connection(connection)
{}

void CopyWriter::write(LegacyFile& file, const QByteArray& fingerprint)
{
    // A database that is not finished is thrown away: it needs no journal on disk, and is flushed once at its end.
    exec("PRAGMA journal_mode=MEMORY");
    exec("PRAGMA synchronous=OFF");
    static_assert(FileImage::pageSize == 1024);
    const quint32 indexCache = std::max(smallestIndexCache, file.pageCount() / 8);
    exec("BEGIN");
    const QByteArray origin(legacyOriginTable.data(), legacyOriginTable.size());
    exec("CREATE TABLE " + origin + " (fingerprint TEXT)");
    exec("INSERT INTO " + origin + " VALUES (" + LegacyTable::quotedText(fingerprint) + ')');
    for (const LegacyFile::Table& table : file.tables()) {
        exec(table.definition.createStatement());
        setCacheSize(hasIndex(table.definition.name) ? indexCache : rowCache);
        writeRows(file, table);
    }
    setCacheSize(indexCache);
    // After the rows: triggers must not see them arrive.
    for (const LegacyFile::Object& object : file.objects())
        writeObject(object);
    exec("COMMIT");
}

void CopyWriter::exec(const QByteArray& sql)
{
    QSqlQuery query(m_connection);
    if (!query.exec(QString::fromUtf8(sql)))
        throw LegacyFileError(QStringLiteral("SQLite 3 does not take it over: %1").arg(query.lastError().text()));
}

void CopyWriter::setCacheSize(quint32 kibibytes)
{
    exec("PRAGMA cache_size=-" + QByteArray::number(kibibytes));
}

bool CopyWriter::hasIndex(const QByteArray& table)
{
    QSqlQuery indexes(m_connection);
    return indexes.exec(QString::fromUtf8("PRAGMA index_list(" + quotedName(table) + ')')) && indexes.next();
}

void CopyWriter::writeRows(LegacyFile& file, const LegacyFile::Table& table)
{
    const LegacyTable& definition = table.definition;
    QByteArrayList names, places;
    const QByteArray rowId = definition.rowIdColumn < 0 ? rowIdName(definition) : QByteArray();
    if (!rowId.isEmpty()) {
        names += rowId;
        places += "?";
    }
    for (const LegacyColumn& column : definition.columns) {
        names += quotedName(column.name);
        // Texts travel as bytes, which saves turning them into UTF-16 and back.
        places += "CAST(? AS TEXT)";
    }
    QSqlQuery insert(m_connection);
    // A conflict is a failure here, whatever the table wants done about later ones.
    bool stored = insert.prepare(QString::fromUtf8("INSERT OR ABORT INTO " + quotedName(definition.name) + " (" +
                                                   names.join(',') + ") VALUES (" + places.join(',') + ')'));
    const auto failure = [&] {
        return LegacyFileError(QStringLiteral("SQLite 3 does not take over the table %1: %2")
                                   .arg(QString::fromUtf8(definition.name), insert.lastError().text()));
    };
    if (!stored)
        throw failure();
    file.readRows(table, [&](qint64 id, const QVector<QByteArray>& values) {
        int place = 0;
        if (!rowId.isEmpty())
            insert.bindValue(place++, id);
        for (const QByteArray& value : values)
            insert.bindValue(place++, value);
        stored = insert.exec();
        if (!stored)
            throw failure();
    });
}

void CopyWriter::writeObject(const LegacyFile::Object& object)
{
    exec("SAVEPOINT object");
    const QString refusal = create(object);
    if (!refusal.isEmpty()) {
        qCWarning(lcCopyWriter).noquote()
            << "Left out of the working copy: the" << object.type << QString::fromUtf8(object.name) << refusal;
        exec("ROLLBACK TO object");
    }
    exec("RELEASE object");
}

QString CopyWriter::create(const LegacyFile::Object& object)
{
    if (!makesItsObject(object))
        return QStringLiteral("Its statement makes something else");
    QSqlQuery query(m_connection);
    if (!query.exec(QString::fromUtf8(object.sql)))
        return query.lastError().text();
    // SQLite stores what it can't use, and would then refuse every change of a table because of it.
    const QByteArray trial = trialStatement(object);
    if (!trial.isEmpty() && !query.exec(QString::fromUtf8("EXPLAIN " + trial)))
        return query.lastError().text();
    return {};
}

QByteArray CopyWriter::trialStatement(const LegacyFile::Object& object)
{
    if (object.type == "index")
        return {};
    if (object.type == "view")
        return "SELECT * FROM " + quotedName(object.name);

    const QByteArray table = quotedName(object.tableName);
    SqlTokenizer tokens(object.sql);
    // After CREATE TRIGGER and the name comes, soon, what fires it.
    for (int i = 0; i < 3; ++i)
        tokens.next();
    while (tokens.peek().kind != SqlToken::End) {
        const SqlToken token = tokens.next();
        if (token.isWord("INSERT"))
            return "INSERT INTO " + table + " DEFAULT VALUES";
        if (token.isWord("DELETE"))
            return "DELETE FROM " + table;
        if (token.isWord("UPDATE"))
            break;
    }
    QSqlQuery columns(m_connection);
    columns.exec(QString::fromUtf8("PRAGMA table_info(" + table + ')'));
    QByteArrayList assignments;
    while (columns.next()) {
        const QByteArray column = quotedName(columns.value(1).toString().toUtf8());
        assignments += column + '=' + column;
    }
    return "UPDATE " + table + " SET " + assignments.join(',');
}

} // namespace DataAccess::Database::Sqlite2
