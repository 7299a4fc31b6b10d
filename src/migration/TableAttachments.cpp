#include "migration/TableAttachments.h"

#include "database/DbException.h"
#include "migration/StatementRunner.h"

namespace DataAccess::Manager {

namespace {

/// The statements that put back what is on the table %1 of PostgreSQL, in the order in which they can be run.
QString postgresSelect()
{
    return QStringLiteral(
        "WITH t AS (SELECT oid, oid::regclass AS name, relowner, relnamespace, "
        "  coalesce(relacl, acldefault('r', relowner)) AS acl FROM pg_class WHERE oid = to_regclass('\"%1\"')), "
        "grants AS (SELECT a.grantee, a.is_grantable, string_agg(a.privilege_type, ', ') AS kinds "
        "  FROM t, aclexplode(t.acl) AS a GROUP BY a.grantee, a.is_grantable "
        "  UNION ALL SELECT a.grantee, a.is_grantable, format('%s (%I)', a.privilege_type, c.attname) "
        "  FROM t JOIN pg_attribute AS c ON c.attrelid = t.oid, aclexplode(c.attacl) AS a) "
        "SELECT 1, format('ALTER TABLE %s OWNER TO %I', name, pg_get_userbyid(relowner)) FROM t "
        "WHERE pg_get_userbyid(relowner) <> current_user "
        "UNION ALL SELECT 2, format('GRANT %s ON %s TO %s%s', kinds, name, "
        "  CASE grantee WHEN 0 THEN 'PUBLIC' ELSE quote_ident(pg_get_userbyid(grantee)) END, "
        "  CASE WHEN is_grantable THEN ' WITH GRANT OPTION' END) FROM t, grants "
        "UNION ALL SELECT 3, format('ALTER TABLE %s ADD CONSTRAINT %I %s', name, conname, "
        "  pg_get_constraintdef(c.oid)) "
        "FROM t JOIN pg_constraint AS c ON c.conrelid = t.oid AND c.contype IN ('u', 'c', 'x', 'f') "
        "UNION ALL SELECT 4, pg_get_indexdef(i.indexrelid) FROM t JOIN pg_index AS i ON i.indrelid = t.oid "
        "WHERE NOT EXISTS (SELECT FROM pg_constraint AS c WHERE c.conindid = i.indexrelid AND c.conrelid = t.oid) "
        "UNION ALL SELECT 5, pg_get_triggerdef(g.oid) FROM t JOIN pg_trigger AS g ON g.tgrelid = t.oid "
        "WHERE NOT g.tgisinternal "
        "UNION ALL SELECT 6, format('COMMENT ON %s IS %L', CASE "
        "  WHEN d.classoid = 'pg_constraint'::regclass THEN format('CONSTRAINT %I ON %s', c.conname, name) "
        "  WHEN d.classoid = 'pg_trigger'::regclass THEN format('TRIGGER %I ON %s', g.tgname, name) "
        "  WHEN i.indexrelid IS NOT NULL THEN format('INDEX %s', i.indexrelid::regclass) "
        "  WHEN d.objsubid > 0 THEN format('COLUMN %s.%I', name, a.attname) "
        "  ELSE format('TABLE %s', name) END, d.description) "
        "FROM t CROSS JOIN pg_description AS d "
        "LEFT JOIN pg_constraint AS c ON d.classoid = 'pg_constraint'::regclass AND c.oid = d.objoid "
        "LEFT JOIN pg_trigger AS g ON d.classoid = 'pg_trigger'::regclass AND g.oid = d.objoid "
        "LEFT JOIN pg_index AS i ON d.classoid = 'pg_class'::regclass AND i.indexrelid = d.objoid "
        "LEFT JOIN pg_attribute AS a ON a.attrelid = t.oid AND d.objsubid > 0 AND a.attnum = d.objsubid "
        "WHERE t.oid IN (c.conrelid, g.tgrelid, i.indrelid) "
        "  OR (d.classoid = 'pg_class'::regclass AND d.objoid = t.oid) "
        "ORDER BY 1");
}

QString sqliteSelect()
{
    return QStringLiteral("SELECT 1, sql FROM sqlite_master WHERE tbl_name = '%1' COLLATE NOCASE "
                          "AND type IN ('index', 'trigger') AND sql IS NOT NULL ORDER BY type, rowid");
}

/// Takes away what the new table grants by default.
void revokeAll(StatementRunner& statements, const QString& table)
{
    const StatementRunner::Rows granted = statements.rows(
        QStringLiteral("SELECT DISTINCT format('REVOKE ALL ON %s FROM %s', c.oid::regclass, CASE a.grantee WHEN 0 "
                       "THEN 'PUBLIC' ELSE quote_ident(pg_get_userbyid(a.grantee)) END) "
                       "FROM pg_class AS c, aclexplode(c.relacl) AS a WHERE c.oid = to_regclass('\"%1\"')")
            .arg(table));
    for (const QVariantList& row : granted)
        statements.execute(row.first().toString());
}

} // namespace

void TableAttachments::remember(StatementRunner& statements, const QString& table)
{
    const QString select = statements.isPostgres() ? postgresSelect() : sqliteSelect();
    for (const QVariantList& row : statements.rows(select.arg(table)))
        m_statements.append(row.at(1).toString());
    m_tables.append(table);
}

QStringList TableAttachments::restore(StatementRunner& statements)
{
    if (statements.isPostgres()) {
        for (const QString& table : qAsConst(m_tables))
            revokeAll(statements, table);
    }
    QStringList lost;
    for (const QString& statement : qAsConst(m_statements)) {
        statements.execute(QStringLiteral("SAVEPOINT attachment"));
        try {
            statements.execute(statement);
        } catch (const Exceptions::DbException& error) {
            // An index on a column that the new layout has no more.
            statements.execute(QStringLiteral("ROLLBACK TO SAVEPOINT attachment"));
            lost.append(statement + QLatin1Char(' ') + QString::fromLocal8Bit(error.what()));
        }
        statements.execute(QStringLiteral("RELEASE SAVEPOINT attachment"));
    }
    return lost;
}

} // namespace DataAccess::Manager
