#include "migration/DetachedForeignKeys.h"

#include "migration/StatementRunner.h"

namespace DataAccess::Manager {

void DetachedForeignKeys::detach(StatementRunner& statements, const QString& table, Rows rows)
{
    if (!statements.isPostgres())
        return;
    const StatementRunner::Rows found = statements.rows(
        QStringLiteral("SELECT c.conrelid::bigint, c.conrelid::regclass::text, quote_ident(c.conname), "
                       "pg_get_constraintdef(c.oid), (SELECT bool_and(a.atttypid = 'text'::regtype) "
                       "FROM pg_attribute AS a WHERE a.attrelid = c.conrelid AND a.attnum = ANY (c.conkey)) "
                       "FROM pg_constraint AS c WHERE c.contype = 'f' AND c.confrelid = to_regclass('\"%1\"') "
                       "AND c.conrelid <> c.confrelid")
            .arg(table));
    for (const QVariantList& row : found) {
        const ForeignKey foreignKey{table,
                                    rows,
                                    row.at(0),
                                    row.at(1).toString(),
                                    row.at(2).toString(),
                                    row.at(3).toString(),
                                    row.at(4).toBool()};
        statements.execute(QStringLiteral("ALTER TABLE %1 DROP CONSTRAINT %2").arg(foreignKey.owner, foreignKey.name));
        m_foreignKeys.append(foreignKey);
    }
}

QStringList DetachedForeignKeys::attach(StatementRunner& statements)
{
    QStringList lost;
    for (const ForeignKey& foreignKey : qAsConst(m_foreignKeys)) {
        // The owner may have been dropped too, and numbers cannot refer to the ids of the new table.
        const bool possible =
            (foreignKey.rows == Rows::Kept || foreignKey.isText) &&
            !statements
                 .rows(QStringLiteral("SELECT oid FROM pg_class WHERE oid = %1 AND to_regclass('\"%2\"') IS NOT NULL")
                           .arg(foreignKey.ownerId.toString(), foreignKey.table))
                 .isEmpty();
        if (!possible) {
            lost.append(foreignKey.owner + QLatin1Char(' ') + foreignKey.definition);
            continue;
        }
        QString definition = foreignKey.definition;
        // Rows that refer to what was discarded stay; the constraint holds for new ones.
        const QString unchecked = QStringLiteral(" NOT VALID");
        if (foreignKey.rows == Rows::Discarded && !definition.endsWith(unchecked))
            definition += unchecked;
        statements.execute(
            QStringLiteral("ALTER TABLE %1 ADD CONSTRAINT %2 %3").arg(foreignKey.owner, foreignKey.name, definition));
    }
    return lost;
}

} // namespace DataAccess::Manager
