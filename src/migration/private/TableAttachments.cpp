#include "migration/private/TableAttachments.h"

#include "database/DbException.h"
#include "database/StatementRunner.h"

namespace DataAccess::Manager {

TableAttachments::TableAttachments(StatementRunner& statements)
    : m_statements(statements)
{}

void TableAttachments::remember(const QString& table)
{
    m_creations += m_statements.dialect().attachmentsOf(m_statements, table);
    m_tables.append(table);
}

QStringList TableAttachments::restore()
{
    for (const QString& table : qAsConst(m_tables))
        m_statements.dialect().revokeDefaultGrants(m_statements, table);
    QStringList lost;
    for (const QString& statement : qAsConst(m_creations)) {
        m_statements.execute(QStringLiteral("SAVEPOINT attachment"));
        try {
            m_statements.execute(statement);
        } catch (const Exceptions::DbException& error) {
            // An index on a column that the new layout has no more.
            m_statements.execute(QStringLiteral("ROLLBACK TO SAVEPOINT attachment"));
            lost.append(statement + QLatin1Char(' ') + QString::fromLocal8Bit(error.what()));
        }
        m_statements.execute(QStringLiteral("RELEASE SAVEPOINT attachment"));
    }
    return lost;
}

void TableAttachments::detachForeignKeys(const QString& table, Rows rows)
{
    for (const Database::ForeignKey& foreignKey : m_statements.dialect().foreignKeysOn(m_statements, table)) {
        m_statements.execute(
            QStringLiteral("ALTER TABLE %1 DROP CONSTRAINT %2").arg(foreignKey.owner, foreignKey.name));
        m_foreignKeys.append({foreignKey, rows});
    }
}

QStringList TableAttachments::attachForeignKeys()
{
    QStringList lost;
    for (const Detached& detached : qAsConst(m_foreignKeys)) {
        if (!attach(detached))
            lost.append(detached.foreignKey.owner + QLatin1Char(' ') + detached.foreignKey.definition);
    }
    return lost;
}

bool TableAttachments::attach(const Detached& detached)
{
    const Database::ForeignKey& foreignKey = detached.foreignKey;
    // The owner may have been dropped too, and numbers cannot refer to the ids of the new table.
    const bool fits = detached.rows == Rows::Kept || foreignKey.isText;
    if (!fits || !m_statements.dialect().isPossible(m_statements, foreignKey))
        return false;
    QString definition = foreignKey.definition;
    // Rows that refer to what was discarded stay; the constraint holds for new ones.
    const QString unchecked = QStringLiteral(" NOT VALID");
    if (detached.rows == Rows::Discarded && !definition.endsWith(unchecked))
        definition += unchecked;
    m_statements.execute(
        QStringLiteral("ALTER TABLE %1 ADD CONSTRAINT %2 %3").arg(foreignKey.owner, foreignKey.name, definition));
    return true;
}

} // namespace DataAccess::Manager
