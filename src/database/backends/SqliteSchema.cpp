#include "database/DbException.h"
#include "database/IDatabase.h"
#include "database/StatementRunner.h"
#include "database/backends/SchemaDialect.h"
#include "database/backends/SqliteBackup.h"
#include "database/backends/SqliteFamily.h"
#include "database/private/Files.h"

#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>

namespace DataAccess::Database {

namespace {

[[noreturn]] void fail(const QString& path, const QString& reason)
{
    throw Exceptions::ExecutionException((path + QStringLiteral(": ") + reason).toLocal8Bit().constData());
}

/// The path of @p file with @p addition in front of the extension.
QString beside(const QString& file, const QString& addition)
{
    const QFileInfo info(file);
    const QString extension = info.suffix().isEmpty() ? QString() : QLatin1Char('.') + info.suffix();
    return info.path() + QLatin1Char('/') + info.fileName().chopped(extension.size()) + addition + extension;
}

void check(const QString& copy, const BackupOrder& order)
{
    const QString faults = sqliteFaults(copy, false);
    if (!faults.isEmpty())
        fail(copy, QStringLiteral("the copy is damaged, as the database itself may be: ") +
                       faults.section(QLatin1Char('\n'), 0, 0));
    for (const auto& table : order.tables) {
        if (sqliteRowCount(copy, table.first) != table.second)
            fail(copy, QStringLiteral("the copy of %1 lacks rows").arg(table.first));
    }
}

/// Copies @p original to @p path, which must be free, by way of @p part. Nothing is left when it throws.
void copyFile(const QString& original, const QString& part, const QString& path, const BackupOrder& order)
{
    QFile::remove(part);
    try {
        createFileLike(part, original);
        backupSqlite(original, part, true);
        check(part, order);
        publishFile(part, path);
    } catch (...) {
        QFile::remove(part);
        QFile::remove(path);
        throw;
    }
}

/// @p digit repeated as an id has digits, with the dashes between.
QString digits(const QString& digit)
{
    QStringList groups;
    for (const int size : {8, 4, 4, 4, 12})
        groups.append(digit.repeated(size));
    return groups.join(QLatin1Char('-'));
}

class SqliteSchema final : public SchemaDialect
{
public:
    QStringList attachmentsOf(StatementRunner& statements, const QString& table) const override
    {
        const QString select =
            QStringLiteral("SELECT 1, sql FROM sqlite_master WHERE tbl_name = '%1' COLLATE NOCASE "
                           "AND type IN ('index', 'trigger') AND sql IS NOT NULL ORDER BY type, rowid");
        QStringList creations;
        for (const QVariantList& row : statements.rows(select.arg(table)))
            creations.append(row.at(1).toString());
        return creations;
    }

    /// Copies the file, unless the database is in memory. The transaction keeps everybody else from writing meanwhile.
    QString makeBackup(StatementRunner& statements, const BackupOrder& order) const override
    {
        // Asked for its driver only.
        const QSqlDriver* const driver = statements.database().Query().driver();
        sqlite3* const database = driver == nullptr ? nullptr : sqliteDatabase(*driver);
        if (database == nullptr)
            throw Exceptions::ExecutionException(
                "the database driver has a copy of SQLite of its own, which cannot be used for it");
        const QString original = QString::fromUtf8(sqlite3_db_filename(database, "main"));
        if (original.isEmpty())
            return {};
        const QString name = QStringLiteral(".before-%1-%2").arg(order.feature).arg(order.version);
        const auto path = [&](const QString& stamp) { return beside(original, name + QLatin1Char('-') + stamp); };
        QString file = path(freeTimeStamp([&](const QString& stamp) { return QFile::exists(path(stamp)); }));
        // Only who has the lock makes it: what is left of one that was killed meanwhile is replaced.
        copyFile(original, unfinishedName(beside(original, name)), file, order);
        qCInfo(order.category) << "Backup before the migration:" << file;
        return file;
    }

    QString columnsSelect() const override
    {
        return QStringLiteral("SELECT m.name, c.name FROM sqlite_master AS m, pragma_table_info(m.name) AS c "
                              "WHERE m.type = 'table'");
    }

    QString isOddId(const QString& column) const override
    {
        // What every id in the one spelling passes comes first, and is cheap: no sets of characters.
        return QStringLiteral(
                   "((%1 <> lower(%1) OR %1 NOT GLOB '{%2}') AND substr(%1, 1 + (%1 GLOB '{*'), 36) GLOB '%3' "
                   "AND rtrim(substr(%1, 37 + (%1 GLOB '{*')), '} ' || char(9, 10, 13)) = '')")
            .arg(column, digits(QStringLiteral("?")), digits(QStringLiteral("[0-9A-Fa-f]")));
    }

    QString canonicalId(const QString& column) const override
    {
        return QStringLiteral("('{' || lower(substr(%1, 1 + (%1 GLOB '{*'), 36)) || '}')").arg(column);
    }

    QString unlessFarBehind(const QString& table, const QString& content, const QString& condition) const override
    {
        if (content.isEmpty())
            return condition;
        // The length of a blob stands at the beginning of its row.
        return QStringLiteral("CASE WHEN typeof(%1) = 'blob' AND length(%1) > 4000 AND "
                              "(SELECT sum(length(%1)) FROM %2) > 33554432 THEN 0 ELSE %3 END")
            .arg(content, table, condition);
    }
};

} // namespace

const SchemaDialect& SqliteFamily::schemaDialect() const
{
    static const SqliteSchema dialect;
    return dialect;
}

} // namespace DataAccess::Database
