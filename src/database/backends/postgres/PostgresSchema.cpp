#include "database/DbException.h"
#include "database/IDatabase.h"
#include "database/StatementRunner.h"
#include "database/backends/SchemaDialect.h"
#include "database/backends/postgres/PostgresBackend.h"

#include <algorithm>

namespace DataAccess::Database {

namespace {

/// The statements that put back what is on the table %1, in the order in which they can be run.
QString attachmentsSelect()
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

bool hasSequence(StatementRunner& statements, const QString& table)
{
    return !statements
                .rows(QStringLiteral("SELECT oid FROM pg_class WHERE relkind = 'S' AND relname = '%1_s' "
                                     "AND pg_table_is_visible(oid)")
                          .arg(table))
                .isEmpty();
}

QString quoted(const QString& table)
{
    return QLatin1Char('"') + table + QLatin1Char('"');
}

class PostgresSchema final : public SchemaDialect
{
public:
    void lockOthersOut(StatementRunner& statements) const override
    {
        statements.execute(QStringLiteral("SET LOCAL lock_timeout = '10s'"));
        statements.execute(QStringLiteral("SELECT pg_advisory_xact_lock(hashtext('DataAccess migration'))"));
    }

    void lockAgainstWriters(StatementRunner& statements, const QStringList& tables) const override
    {
        QStringList names;
        for (const QString& table : tables)
            names.append(quoted(table));
        if (!names.isEmpty())
            statements.execute(QStringLiteral("LOCK TABLE %1 IN SHARE MODE").arg(names.join(QStringLiteral(", "))));
    }

    bool needsReferencedTables() const override { return true; }

    bool createSequence(StatementRunner& statements, const QString& table) const override
    {
        return hasSequence(statements, table) || statements.database().CreateSequence(table);
    }

    bool completeSequence(StatementRunner& statements, const QString& table) const override
    {
        if (hasSequence(statements, table))
            return true;
        if (!statements.database().CreateSequence(table))
            return false;
        statements.execute(QStringLiteral("SELECT setval('%1_s', max(id)) FROM %1").arg(table));
        return true;
    }

    QStringList attachmentsOf(StatementRunner& statements, const QString& table) const override
    {
        QStringList creations;
        for (const QVariantList& row : statements.rows(attachmentsSelect().arg(table)))
            creations.append(row.at(1).toString());
        return creations;
    }

    void revokeDefaultGrants(StatementRunner& statements, const QString& table) const override
    {
        const StatementRunner::Rows granted = statements.rows(
            QStringLiteral("SELECT DISTINCT format('REVOKE ALL ON %s FROM %s', c.oid::regclass, CASE a.grantee WHEN 0 "
                           "THEN 'PUBLIC' ELSE quote_ident(pg_get_userbyid(a.grantee)) END) "
                           "FROM pg_class AS c, aclexplode(c.relacl) AS a WHERE c.oid = to_regclass('\"%1\"')")
                .arg(table));
        for (const QVariantList& row : granted)
            statements.execute(row.first().toString());
    }

    QVector<ForeignKey> foreignKeysOn(StatementRunner& statements, const QString& table) const override
    {
        QVector<ForeignKey> foreignKeys;
        const StatementRunner::Rows found = statements.rows(
            QStringLiteral("SELECT c.conrelid::bigint, c.conrelid::regclass::text, quote_ident(c.conname), "
                           "pg_get_constraintdef(c.oid), (SELECT bool_and(a.atttypid = 'text'::regtype) "
                           "FROM pg_attribute AS a WHERE a.attrelid = c.conrelid AND a.attnum = ANY (c.conkey)) "
                           "FROM pg_constraint AS c WHERE c.contype = 'f' AND c.confrelid = to_regclass('\"%1\"') "
                           "AND c.conrelid <> c.confrelid")
                .arg(table));
        for (const QVariantList& row : found)
            foreignKeys.append({table, row.at(0), row.at(1).toString(), row.at(2).toString(), row.at(3).toString(),
                                row.at(4).toBool()});
        return foreignKeys;
    }

    bool isPossible(StatementRunner& statements, const ForeignKey& foreignKey) const override
    {
        return !statements
                    .rows(
                        QStringLiteral("SELECT oid FROM pg_class WHERE oid = %1 AND to_regclass('\"%2\"') IS NOT NULL")
                            .arg(foreignKey.ownerId.toString(), foreignKey.table))
                    .isEmpty();
    }

    /// Copies each table to one of another name.
    QString makeBackup(StatementRunner& statements, const BackupOrder& order) const override
    {
        const QStringList present = statements.database().Tables();
        // At most 57 of the 63 characters that a name may have.
        const auto nameOfCopy = [&](const QString& table, const QString& stamp) {
            return QStringLiteral("%1 before %2 %3 %4")
                .arg(table, order.feature, QString::number(order.version), stamp);
        };
        const QString stamp = freeTimeStamp([&](const QString& candidate) {
            return std::any_of(order.tables.begin(), order.tables.end(),
                               [&](const auto& table) { return present.contains(nameOfCopy(table.first, candidate)); });
        });
        for (const auto& table : order.tables) {
            const QString copy = nameOfCopy(table.first, stamp);
            statements.execute(
                QStringLiteral("CREATE TABLE %1 AS SELECT * FROM %2").arg(quoted(copy), quoted(table.first)));
            if (statements.count(copy) != table.second)
                throw Exceptions::ExecutionException(
                    ("the copy of " + table.first.toLocal8Bit() + " lacks rows").constData());
        }
        qCInfo(order.category) << "Backup before the migration:" << order.tables.size() << "tables"
                               << nameOfCopy({}, stamp);
        return {};
    }

    QString columnsSelect() const override
    {
        return QStringLiteral("SELECT table_name::text, column_name::text FROM information_schema.columns "
                              "WHERE table_schema = ANY (current_schemas(false))");
    }

    QString isOddId(const QString& column) const override
    {
        // What every id in the one spelling passes comes first, and is cheap: no sets of characters, no locale.
        return QStringLiteral("((%1 <> lower(%1 COLLATE \"C\") OR octet_length(%1) <> 38 OR %1 NOT LIKE '{%}') AND "
                              "%1 ~ '^[{]?%2{8}-%2{4}-%2{4}-%2{4}-%2{12}[}[:space:]]*$')")
            .replace(QStringLiteral("%1"), column)
            .replace(QStringLiteral("%2"), QStringLiteral("[0-9A-Fa-f]"));
    }

    QString canonicalId(const QString& column) const override
    {
        return QStringLiteral("('{' || lower(substring(%1 from '[0-9A-Fa-f-]{36}')) || '}')").arg(column);
    }

    QString asText(qint64 number) const override { return QStringLiteral("'%1'").arg(number); }
};

} // namespace

const SchemaDialect& PostgresBackend::schemaDialect() const
{
    static const PostgresSchema dialect;
    return dialect;
}

} // namespace DataAccess::Database
