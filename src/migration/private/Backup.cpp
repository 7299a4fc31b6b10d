#include "migration/private/Backup.h"

#include "database/DbException.h"
#include "database/IDatabase.h"
#include "database/StatementRunner.h"
#include "database/backends/Backend.h"
#include "database/backends/SchemaDialect.h"
#include "migration/MigrationModule.h"
#include "migration/private/SchemaVersion.h"

#include <QFile>

#include <algorithm>

namespace DataAccess::Manager {

namespace {

bool isSettingsTable(const QString& table)
{
    const QVector<TableDefinition> tables = SchemaVersion::tables();
    return std::any_of(tables.begin(), tables.end(),
                       [&](const TableDefinition& settings) { return settings.name == table; });
}

} // namespace

Backup::Backup(StatementRunner& statements, const MigrationModule& module)
    : m_statements(statements)
    , m_module(module)
{}

void Backup::make()
{
    if (!m_statements.database().Config()->BackupBeforeMigration() ||
        Database::Backend::of(m_statements.database()).keepsOriginal())
        return;
    try {
        const Database::BackupOrder order{m_module.feature, m_module.expectedVersion(), countRows(), m_module.category};
        const bool hasRows = std::any_of(order.tables.begin(), order.tables.end(), [](const auto& table) {
            return table.second > 0 && !isSettingsTable(table.first);
        });
        if (hasRows)
            m_file = m_statements.dialect().makeBackup(m_statements, order);
    } catch (const Exceptions::DbException& error) {
        const QString text = QStringLiteral("No backup can be made before the migration, so nothing was changed: %1. "
                                            "Make room or give the right to make one, or switch backups off in the "
                                            "configuration of the database.")
                                 .arg(QString::fromLocal8Bit(error.what()));
        throw Exceptions::ExecutionException(text.toLocal8Bit().constData(), error.isUnavailable());
    }
}

QVector<QPair<QString, qint64>> Backup::countRows()
{
    const QStringList changed = m_module.tables();
    QStringList names;
    for (const QString& table : m_statements.database().Tables()) {
        if (changed.contains(table.toLower()) || isSettingsTable(table))
            names.append(table);
    }
    m_statements.dialect().lockAgainstWriters(m_statements, names);
    QVector<QPair<QString, qint64>> rows;
    for (const QString& table : qAsConst(names))
        rows.append({table, m_statements.count(table)});
    return rows;
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
