#include "migration/Backup.h"

#include "database/DbException.h"
#include "database/IDatabase.h"
#include "database/backends/Backend.h"
#include "database/backends/SqliteFamily.h"
#include "database/private/Files.h"
#include "migration/FileCopy.h"
#include "migration/MigrationModule.h"
#include "migration/SchemaVersion.h"
#include "migration/StatementRunner.h"

#include <QDateTime>
#include <QFile>

#include <algorithm>

namespace DataAccess::Manager {

using Exceptions::DbException;
using Exceptions::ExecutionException;

namespace {

QString quoted(const QString& table)
{
    return QLatin1Char('"') + table + QLatin1Char('"');
}

bool isSettingsTable(const QString& table)
{
    const QVector<TableDefinition> tables = SchemaVersion::tables();
    return std::any_of(tables.begin(), tables.end(),
                       [&](const TableDefinition& settings) { return settings.name == table; });
}

/// The first time stamp from now on for which @p isTaken says no: what is there is never overwritten.
template <typename Predicate>
QString freeTimeStamp(Predicate isTaken)
{
    QDateTime time = QDateTime::currentDateTimeUtc();
    const auto text = [&] { return time.toString(QStringLiteral("yyyyMMdd'T'HHmmss")); };
    while (isTaken(text()))
        time = time.addSecs(1);
    return text();
}

} // namespace

Backup::Backup(StatementRunner& statements, const MigrationModule& module)
    : m_statements(statements)
    , m_module(module)
{}

void Backup::make()
{
    const auto config = m_statements.database().Config();
    if (!config->BackupBeforeMigration() || Database::Backend::of(m_statements.database()).keepsOriginal())
        return;
    try {
        const TableRows tables = countRows();
        const bool hasRows = std::any_of(tables.begin(), tables.end(), [](const auto& table) {
            return table.second > 0 && !isSettingsTable(table.first);
        });
        if (!hasRows)
            return;
        if (m_statements.isPostgres())
            copyTables(tables);
        else
            copyFile(tables);
    } catch (const DbException& error) {
        const QString text = QStringLiteral("No backup can be made before the migration, so nothing was changed: %1. "
                                            "Make room or give the right to make one, or switch backups off in the "
                                            "configuration of the database.")
                                 .arg(QString::fromLocal8Bit(error.what()));
        throw ExecutionException(text.toLocal8Bit().constData(), error.isUnavailable());
    }
}

Backup::TableRows Backup::countRows()
{
    TableRows tables;
    QStringList names;
    for (const QString& table : m_statements.database().Tables()) {
        if (m_module.tables.contains(table.toLower()) || isSettingsTable(table)) {
            tables.append({table, 0});
            names.append(quoted(table));
        }
    }
    // On SQLite nobody else can write now.
    if (m_statements.isPostgres() && !names.isEmpty())
        m_statements.execute(QStringLiteral("LOCK TABLE %1 IN SHARE MODE").arg(names.join(QStringLiteral(", "))));
    for (auto& table : tables)
        table.second = m_statements.count(table.first);
    return tables;
}

void Backup::copyFile(const TableRows& tables)
{
    // Asked for its driver only.
    const QSqlDriver* const driver = m_statements.database().Query().driver();
    sqlite3* const database = driver == nullptr ? nullptr : Database::sqliteDatabase(*driver);
    if (database == nullptr)
        throw ExecutionException("the database driver has a copy of SQLite of its own, which cannot be used for it");
    const FileCopy copy(database);
    if (copy.original().isEmpty())
        return; // A database in memory.
    const QString name = QStringLiteral("%1-%2").arg(m_module.feature).arg(m_module.expectedVersion);
    const auto path = [&](const QString& stamp) {
        return copy.besideOriginal(QStringLiteral(".before-%1-%2").arg(name, stamp));
    };
    const QString file = path(freeTimeStamp([&](const QString& stamp) { return QFile::exists(path(stamp)); }));
    // Only who has the lock makes it: what is left of one that was killed meanwhile is replaced.
    copy.make(Database::unfinishedName(copy.besideOriginal(QStringLiteral(".before-") + name)), file, tables);
    m_file = file;
    qCInfo(m_module.category) << "Backup before the migration:" << m_file;
}

void Backup::copyTables(const TableRows& tables)
{
    const QStringList present = m_statements.database().Tables();
    // At most 57 of the 63 characters that a name may have.
    const auto nameOfCopy = [&](const QString& table, const QString& stamp) {
        return QStringLiteral("%1 before %2 %3 %4")
            .arg(table, m_module.feature, QString::number(m_module.expectedVersion), stamp);
    };
    const QString stamp = freeTimeStamp([&](const QString& candidate) {
        return std::any_of(tables.begin(), tables.end(),
                           [&](const auto& table) { return present.contains(nameOfCopy(table.first, candidate)); });
    });
    for (const auto& table : tables) {
        const QString copy = nameOfCopy(table.first, stamp);
        m_statements.execute(
            QStringLiteral("CREATE TABLE %1 AS SELECT * FROM %2").arg(quoted(copy), quoted(table.first)));
        if (m_statements.count(copy) != table.second)
            throw ExecutionException(("the copy of " + table.first.toLocal8Bit() + " lacks rows").constData());
    }
    qCInfo(m_module.category) << "Backup before the migration:" << tables.size() << "tables" << nameOfCopy({}, stamp);
}

void Backup::withdraw()
{
    if (m_file.isEmpty())
        return;
    if (QFile::remove(m_file))
        qCInfo(m_module.category) << "Nothing was changed; the backup is removed:" << m_file;
    m_file.clear();
}

} // namespace DataAccess::Manager
