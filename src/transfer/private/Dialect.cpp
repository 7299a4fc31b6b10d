#include "transfer/private/Dialect.h"

#include "database/IDatabase.h"

namespace DataAccess::Transfer {

namespace {

class PostgresDialect final : public Dialect
{
    // A file that others have locked is not waited for without end either.
    QString preparation() const override { return QStringLiteral("SET lock_timeout = '10s'"); }

    QString snapshot() const override
    {
        return QStringLiteral("SET TRANSACTION ISOLATION LEVEL REPEATABLE READ READ ONLY");
    }

    bool needsCursor() const override { return true; }
    bool keepsKinds() const override { return true; }

    QString orderTerm(const SchemaColumn& column) const override
    {
        const bool isText = column.kind == Enumerations::Text;
        return quoted(column.name) + (isText ? QStringLiteral(" COLLATE \"C\"") : QString()) +
               QStringLiteral(" NULLS FIRST");
    }

    QString isTrue(const QString& column) const override { return QStringLiteral("coalesce(%1, false)").arg(column); }

    QString lastTime(const QString& table) const override
    {
        return QStringLiteral("SELECT to_char(max(\"timestamp\"), 'YYYY-MM-DD HH24:MI:SS.MS') FROM ") + quoted(table);
    }

    QString columnsOf(const QString& table) const override
    {
        return QStringLiteral("SELECT a.attname, upper(format_type(a.atttypid, a.atttypmod)), EXISTS (SELECT 1 FROM "
                              "pg_index AS i WHERE i.indrelid = a.attrelid AND i.indisprimary AND a.attnum = "
                              "ANY(i.indkey)) FROM pg_attribute AS a WHERE a.attrelid = '\"%1\"'::regclass AND "
                              "a.attnum > 0 AND NOT a.attisdropped")
            .arg(table);
    }

    QStringList typesOf(Enumerations::DataType kind) const override
    {
        switch (kind) {
        case Enumerations::Integer:
            return {QStringLiteral("INTEGER"), QStringLiteral("BIGINT")};
        case Enumerations::Boolean:
            return {QStringLiteral("BOOLEAN")};
        case Enumerations::Numeric:
            return {QStringLiteral("NUMERIC")};
        case Enumerations::TimeStamp:
            return {QStringLiteral("TIMESTAMP WITHOUT TIME ZONE")};
        case Enumerations::Date:
            return {QStringLiteral("DATE")};
        case Enumerations::ByteArray:
            return {QStringLiteral("BYTEA")};
        default:
            return {QStringLiteral("TEXT")};
        }
    }

    QString foreignTypeCondition(const SchemaTable& /*table*/) const override { return {}; }
};

class SqliteDialect final : public Dialect
{
    // Rows in the order of their ids lie all over the file.
    QString preparation() const override { return QStringLiteral("PRAGMA cache_size = -65536"); }
    QString snapshot() const override { return {}; }
    bool needsCursor() const override { return false; }
    bool keepsKinds() const override { return false; }
    QString orderTerm(const SchemaColumn& column) const override { return quoted(column.name); }
    QString isTrue(const QString& column) const override { return QStringLiteral("coalesce(%1, 0) <> 0").arg(column); }

    QString lastTime(const QString& table) const override
    {
        // In a legacy file the column may hold a word in place of a time.
        return QStringLiteral("SELECT max(\"timestamp\") FROM %1 WHERE \"timestamp\" < ':'").arg(quoted(table));
    }

    QString columnsOf(const QString& table) const override
    {
        return QStringLiteral("SELECT name, upper(type), pk FROM pragma_table_info('%1')").arg(table);
    }

    QStringList typesOf(Enumerations::DataType kind) const override
    {
        if (kind == Enumerations::Integer || kind == Enumerations::Boolean)
            return {QStringLiteral("INTEGER")};
        return {kind == Enumerations::Numeric ? QStringLiteral("REAL") : QStringLiteral("TEXT")};
    }

    QString foreignTypeCondition(const SchemaTable& table) const override
    {
        QStringList terms;
        for (const SchemaColumn& column : table.columns) {
            QString allowed = QStringLiteral("'text', 'null'");
            if (column.kind == Enumerations::Integer || column.kind == Enumerations::Boolean)
                allowed = QStringLiteral("'integer', 'null'");
            else if (column.kind == Enumerations::Numeric)
                allowed = QStringLiteral("'real', 'integer', 'null'");
            else if (column.kind == Enumerations::ByteArray)
                continue;
            terms.append(QStringLiteral("typeof(%1) NOT IN (%2)").arg(quoted(column.name), allowed));
        }
        return terms.join(QLatin1String(" OR "));
    }
};

} // namespace

Dialect::~Dialect() = default;

const Dialect& Dialect::of(Interfaces::IDatabase& db)
{
    static const PostgresDialect postgres;
    static const SqliteDialect sqlite;
    if (db.Config()->Type() == Enumerations::Postgres)
        return postgres;
    return sqlite;
}

} // namespace DataAccess::Transfer
