#include "migration/MigrationStep.h"

#include "database/DbException.h"
#include "database/IDatabase.h"

#include <QSqlRecord>

#include <algorithm>

namespace DataAccess::Manager {

MigrationStep::MigrationStep(Interfaces::IDatabase& db, const MigrationModule& module)
    : StatementRunner(db)
    , m_module(module)
    , m_converter(db.Converter())
{}

QStringList MigrationStep::tables() const
{
    return database().Tables();
}

bool MigrationStep::hasColumns(const TableDefinition& layout)
{
    const QSqlRecord present = database().Exec(QStringLiteral("SELECT * FROM %1 WHERE 1=0").arg(layout.name)).record();
    return std::all_of(layout.columns.begin(), layout.columns.end(),
                       [&](const Column& column) { return present.contains(column.name); });
}

QStringList MigrationStep::statementParts(const TableDefinition& table) const
{
    TableDefinition possible = table;
    if (isPostgres()) {
        for (const QString& clause : possible.removeReferencesExceptTo(tables()))
            qCWarning(m_module.category) << "Table:" << table.name << "is created without" << clause;
    }
    return possible.statementParts(*m_converter);
}

void MigrationStep::create(const TableDefinition& table)
{
    execute(statementParts(table).join(QLatin1Char(' ')));
}

void MigrationStep::drop(const QString& table, DetachedForeignKeys::Rows rows)
{
    m_foreignKeys.detach(*this, table, rows);
    execute(QStringLiteral("DROP TABLE \"%1\" ;").arg(table));
}

void MigrationStep::discard(const QString& table)
{
    const qint64 rows = count(table);
    drop(table, DetachedForeignKeys::Rows::Discarded);
    tellDiscarded(table, rows);
}

void MigrationStep::empty(const QString& table)
{
    tellDiscarded(table, execute(QStringLiteral("DELETE FROM ") + table, {}));
}

void MigrationStep::dropCopied(const QString& table)
{
    drop(table, DetachedForeignKeys::Rows::Discarded);
}

void MigrationStep::replace(const TableDefinition& layout)
{
    m_attachments.remember(*this, layout.name);
    drop(layout.name, DetachedForeignKeys::Rows::Kept);
    create(layout);
}

void MigrationStep::tellDiscarded(const QString& table, qint64 rows) const
{
    if (rows > 0)
        qCWarning(m_module.category) << "Discarded" << rows << "rows of" << table;
}

void MigrationStep::rebuild(const TableDefinition& from, const TableDefinition& to, const QString& workName,
                            const QString& save, const QString& restore, const std::function<void()>& afterwards)
{
    if (hasColumns(to))
        return;
    create(from.workTable(workName));
    execute(save);
    replace(to);
    execute(restore);
    if (afterwards)
        afterwards();
    dropCopied(workName);
}

void MigrationStep::require(unsigned int errors) const
{
    if (errors > 0)
        throw Exceptions::ExecutionException("the step is broken off");
}

void MigrationStep::restoreAttachments()
{
    for (const QString& lost : m_attachments.restore(*this))
        qCWarning(m_module.category).noquote() << "Lost with the old layout of its table:" << lost;
    for (const QString& foreignKey : m_foreignKeys.attach(*this))
        qCWarning(m_module.category) << "Foreign key lost:" << foreignKey;
}

} // namespace DataAccess::Manager
