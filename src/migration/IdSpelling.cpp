#include "migration/IdSpelling.h"

#include "database/DbException.h"
#include "database/Failure.h"
#include "database/IDatabase.h"
#include "database/LoggingCategories.h"

#include <algorithm>

namespace DataAccess::Manager {

using Database::Failure;
using Database::FailureWatch;
using Exceptions::DbException;
using Exceptions::ExecutionException;

namespace {

QString qualified(const QString& table, const QString& column)
{
    return table + QLatin1Char('.') + column;
}

} // namespace

IdSpelling::IdSpelling(Interfaces::IDatabase& db)
    : m_statements(db)
    , m_ids(m_statements.isPostgres())
{}

bool IdSpelling::unify()
{
    try {
        const QVector<IdColumns> tables = presentTables();
        if (!hasOddIds(tables))
            return true;
        for (const IdColumns& table : tables)
            findTwins(table);
        const auto isChanged = [this](const IdColumns& table) { return hasChanges(table); };
        if (std::any_of(tables.begin(), tables.end(), isChanged))
            change(tables);
        return true;
    } catch (const DbException& error) {
        const QString reason = QString::fromLocal8Bit(error.what());
        qCCritical(lcMigrationLog).noquote() << "The ids cannot be brought to one spelling:" << reason;
        const auto kind = error.isUnavailable() ? Failure::Kind::Unavailable : Failure::Kind::Statement;
        FailureWatch::report({reason, kind, {}, {}});
        return false;
    }
}

QVector<IdColumns> IdSpelling::presentTables()
{
    QSet<QString> present;
    const QString columns =
        m_statements.isPostgres()
            ? QStringLiteral("SELECT table_name::text, column_name::text FROM information_schema.columns "
                             "WHERE table_schema = ANY (current_schemas(false))")
            : QStringLiteral("SELECT m.name, c.name FROM sqlite_master AS m, pragma_table_info(m.name) AS c "
                             "WHERE m.type = 'table'");
    for (const QVariantList& row : m_statements.rows(columns))
        present.insert(qualified(row.first().toString(), row.last().toString()));

    QVector<IdColumns> tables = IdColumns::all();
    for (IdColumns& table : tables) {
        const auto isMissing = [&](const QString& column) { return !present.contains(qualified(table.table, column)); };
        for (QString* const column : {&table.key, &table.list, &table.content}) {
            if (isMissing(*column))
                column->clear();
        }
        table.references.erase(std::remove_if(table.references.begin(), table.references.end(), isMissing),
                               table.references.end());
    }
    return tables;
}

bool IdSpelling::hasOddIds(const QVector<IdColumns>& tables)
{
    // One statement for all: a server may be far away.
    QStringList oddTables;
    for (const IdColumns& table : tables) {
        QStringList conditions;
        if (!table.key.isEmpty())
            conditions.append(m_ids.isOdd(table.key));
        for (const QString& column : table.references)
            conditions.append(m_ids.unlessFarBehind(table.table, table.content, m_ids.isOdd(column)));
        if (!conditions.isEmpty())
            oddTables.append(QStringLiteral("EXISTS (SELECT 1 FROM %1 WHERE %2)")
                                 .arg(table.table, conditions.join(QStringLiteral(" OR "))));
    }
    const auto hasOddLists = [this](const IdColumns& table) { return !oddLists(table).isEmpty(); };
    return (!oddTables.isEmpty() &&
            !m_statements.rows(QStringLiteral("SELECT 1 WHERE %1").arg(oddTables.join(QStringLiteral(" OR "))))
                 .isEmpty()) ||
           std::any_of(tables.begin(), tables.end(), hasOddLists);
}

QString IdSpelling::hasTwin(const IdColumns& table) const
{
    const QString key = qualified(table.table, table.key);
    const QString other = qualified(QStringLiteral("o"), table.key);
    return QStringLiteral("(EXISTS (SELECT 1 FROM %1 AS o WHERE %2 = %3) OR %3 IN (SELECT %4 FROM %1 AS o WHERE %5 "
                          "GROUP BY 1 HAVING count(*) > 1))")
        .arg(table.table, other, m_ids.canonical(key), m_ids.canonical(other), m_ids.isOdd(other));
}

void IdSpelling::findTwins(const IdColumns& table)
{
    if (table.key.isEmpty())
        return;
    const QString key = qualified(table.table, table.key);
    const StatementRunner::Rows twins = m_statements.rows(
        QStringLiteral("SELECT %1 FROM %2 WHERE %3 AND %4").arg(key, table.table, m_ids.isOdd(key), hasTwin(table)));
    if (twins.isEmpty())
        return;
    m_twinTables.append(table);
    for (const QVariantList& row : twins) {
        const QString id = row.first().toString();
        m_twins.insert(QUuid(id));
        qCWarning(lcMigrationLog) << "Two rows of the table" << table.table
                                  << "have one id in two spellings, and stay as they are:" << id;
    }
}

QString IdSpelling::isChangeable(const QString& table, const QString& column) const
{
    const QString value = qualified(table, column);
    QString condition = m_ids.isOdd(value);
    for (const IdColumns& twins : m_twinTables) {
        const QString other = qualified(QStringLiteral("o"), twins.key);
        if (twins.table != table)
            condition += QStringLiteral(" AND %1 NOT IN (SELECT %2 FROM %3 AS o WHERE %4)")
                             .arg(m_ids.canonical(value), m_ids.canonical(other), twins.table, m_ids.isOdd(other));
    }
    return condition;
}

QString IdSpelling::isChangeableKey(const IdColumns& table) const
{
    return QStringLiteral("%1 AND NOT %2").arg(isChangeable(table.table, table.key), hasTwin(table));
}

bool IdSpelling::exists(const QString& table, const QString& condition)
{
    return !m_statements.rows(QStringLiteral("SELECT 1 FROM %1 WHERE %2 LIMIT 1").arg(table, condition)).isEmpty();
}

bool IdSpelling::hasChanges(const IdColumns& table)
{
    const auto isChanged = [&](const QString& column) {
        return exists(table.table, isChangeable(table.table, column));
    };
    return hasChangedKeys(table) || std::any_of(table.references.begin(), table.references.end(), isChanged) ||
           !oddLists(table).isEmpty();
}

bool IdSpelling::hasChangedKeys(const IdColumns& table)
{
    return !table.key.isEmpty() && exists(table.table, isChangeableKey(table));
}

void IdSpelling::change(const QVector<IdColumns>& tables)
{
    Database::Transaction transaction = m_statements.database().WriteTransaction();
    if (!transaction.isOpen())
        throw ExecutionException(transaction.lastError().toLocal8Bit().constData(), transaction.isUnavailable());
    if (m_statements.isPostgres()) {
        m_statements.execute(QStringLiteral("SET LOCAL lock_timeout = '10s'"));
        m_statements.execute(QStringLiteral("SELECT pg_advisory_xact_lock(hashtext('DataAccess migration'))"));
    }
    DetachedForeignKeys foreignKeys;
    for (const IdColumns& table : tables) {
        if (hasChangedKeys(table))
            foreignKeys.detach(m_statements, table.table, DetachedForeignKeys::Rows::Kept);
    }
    // References to rows that stay are told by what is spelled otherwise when all other keys are changed.
    for (const IdColumns& table : tables) {
        if (!table.key.isEmpty())
            changeColumn(table.table, table.key, isChangeableKey(table));
    }
    for (const IdColumns& table : tables) {
        for (const QString& column : table.references)
            changeColumn(table.table, column, isChangeable(table.table, column));
        changeLists(table);
    }
    foreignKeys.attach(m_statements);
    if (!transaction.commit())
        throw ExecutionException(transaction.lastError().toLocal8Bit().constData(), transaction.isUnavailable());
    for (const QString& line : qAsConst(m_report))
        qCWarning(lcMigrationLog).noquote() << line;
}

void IdSpelling::changeColumn(const QString& table, const QString& column, const QString& condition)
{
    const int rows = m_statements.execute(
        QStringLiteral("UPDATE %1 SET %2 = %3 WHERE %4").arg(table, column, m_ids.canonical(column), condition), {});
    if (rows > 0)
        m_report.append(
            QStringLiteral("Ids brought to one spelling: table %1, column %2, %3 rows").arg(table, column).arg(rows));
}

StatementRunner::Rows IdSpelling::oddLists(const IdColumns& table)
{
    if (table.list.isEmpty() || table.key.isEmpty())
        return {};
    StatementRunner::Rows odd;
    for (const QVariantList& row :
         m_statements.rows(QStringLiteral("SELECT %1, %2 FROM %3 WHERE %4")
                               .arg(table.list, table.key, table.table, IdExpressions::mayBeOddList(table.list)))) {
        const QString list = row.first().toString();
        const QString canonical = IdExpressions::canonicalList(list, m_twins);
        if (canonical != list)
            odd.append({canonical, row.last()});
    }
    return odd;
}

void IdSpelling::changeLists(const IdColumns& table)
{
    const StatementRunner::Rows lists = oddLists(table);
    if (lists.isEmpty())
        return;
    QVector<QVariantList> columns(2);
    for (const QVariantList& row : lists) {
        columns[0].append(row.first());
        columns[1].append(row.last());
    }
    m_statements.executeBatch(
        QStringLiteral("UPDATE %1 SET %2 = ? WHERE %3 = ?").arg(table.table, table.list, table.key), columns);
    m_report.append(QStringLiteral("Ids brought to one spelling: table %1, column %2, %3 rows")
                        .arg(table.table, table.list)
                        .arg(lists.size()));
}

} // namespace DataAccess::Manager
