#include "migration/private/IdSpelling.h"

#include "database/DbException.h"
#include "database/Failure.h"
#include "database/IDatabase.h"
#include "database/LoggingCategories.h"
#include "database/backends/SchemaDialect.h"
#include "migration/private/TableAttachments.h"

#include <QRegularExpression>

#include <algorithm>

namespace DataAccess::Manager {

using Database::Failure;
using Database::FailureWatch;
using Exceptions::DbException;
using Exceptions::ExecutionException;

namespace {

/// @p columns are those of the references, separated by blanks.
IdColumns entity(const char* table, const char* columns = "")
{
    return {QLatin1String(table),
            QStringLiteral("id"),
            QString::fromLatin1(columns).split(QLatin1Char(' '), Qt::SkipEmptyParts),
            {},
            {}};
}

IdColumns withoutIds(const char* table, const char* columns)
{
    IdColumns result = entity(table, columns);
    result.key.clear();
    return result;
}

IdColumns route()
{
    IdColumns result = entity("ce_route", "cable");
    result.list = QStringLiteral("points");
    return result;
}

IdColumns file()
{
    IdColumns result = entity("pd_file", "report");
    result.content = QStringLiteral("data");
    return result;
}

IdColumns taskEvaluation()
{
    IdColumns result = entity("pd_evaluation");
    result.key = QStringLiteral("taskid");
    return result;
}

/// All tables of the cable network and of the partial-discharge results. One stands before those whose key refers to
/// it.
const QVector<IdColumns>& idColumns()
{
    static const QVector<IdColumns> tables = {
        entity("ce_station", "point"),
        entity("ce_point"),
        route(),
        entity("ce_phase", "cable"),
        entity("ce_owner"),
        entity("ce_switchgear"),
        entity("ce_termination"),
        entity("ce_segmenttype"),
        entity("ce_insulation"),
        entity("ce_segment", "phase point detail"),
        entity("ce_segment_detail", "insulation type"),
        entity("ce_cable", "stationa stationb terminationa terminationb switchgeara switchgearb route owner"),
        withoutIds("evaluation", "tid cid"),
        entity("qor_rating", "tid cid"),
        withoutIds("cablebook_measures", "cableid stationid"),
        file(),
        entity("pd_task", "cable station"),
        entity("pd_report", "task"),
        entity("pd_mapping", "report"),
        withoutIds("pd_report_mapping", "reportid"),
        withoutIds("pd_filter", "reportid"),
        withoutIds("pd_iec", "reportid"),
        taskEvaluation(),
        entity("pd_mapping_event", "report_id"),
        entity("pd_iec_overview", "report_id"),
        entity("pd_summary", "report_id"),
        entity("pd_task_info", "report_id"),
        entity("pd_lbdiagram", "report_id"),
    };
    return tables;
}

/// Whether @p column, a list of ids, may hold one in another spelling; never false where it does.
QString mayBeOddList(const QString& column)
{
    // Four dashes for each 38 characters, besides the marks between the ids.
    return QStringLiteral("(%1 <> lower(%1) OR %1 LIKE '% %' OR 4 * length(replace(%1, '#', '')) <> "
                          "38 * (length(%1) - length(replace(%1, '-', ''))))")
        .replace(QStringLiteral("%1"), column);
}

/// @p list with all ids in the one spelling, except @p exempt.
QString canonicalList(const QString& list, const QSet<QUuid>& exempt)
{
    static const QRegularExpression id(
        QStringLiteral("^[{]?%1{8}-%1{4}-%1{4}-%1{4}-%1{12}[}\\s]*$").arg(QStringLiteral("[0-9A-Fa-f]")));
    QStringList parts = list.split(QLatin1Char('#'));
    for (QString& part : parts) {
        if (id.match(part).hasMatch() && !exempt.contains(QUuid(part)))
            part = QUuid(part).toString();
    }
    return parts.join(QLatin1Char('#'));
}

QString qualified(const QString& table, const QString& column)
{
    return table + QLatin1Char('.') + column;
}

} // namespace

IdSpelling::IdSpelling(Interfaces::IDatabase& db)
    : m_statements(db)
    , m_dialect(m_statements.dialect())
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
    for (const QVariantList& row : m_statements.rows(m_dialect.columnsSelect()))
        present.insert(qualified(row.first().toString(), row.last().toString()));

    QVector<IdColumns> tables = idColumns();
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
            conditions.append(m_dialect.isOddId(table.key));
        for (const QString& column : table.references)
            conditions.append(m_dialect.unlessFarBehind(table.table, table.content, m_dialect.isOddId(column)));
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
        .arg(table.table, other, m_dialect.canonicalId(key), m_dialect.canonicalId(other), m_dialect.isOddId(other));
}

void IdSpelling::findTwins(const IdColumns& table)
{
    if (table.key.isEmpty())
        return;
    const QString key = qualified(table.table, table.key);
    const StatementRunner::Rows twins =
        m_statements.rows(QStringLiteral("SELECT %1 FROM %2 WHERE %3 AND %4")
                              .arg(key, table.table, m_dialect.isOddId(key), hasTwin(table)));
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
    QString condition = m_dialect.isOddId(value);
    for (const IdColumns& twins : m_twinTables) {
        const QString other = qualified(QStringLiteral("o"), twins.key);
        if (twins.table != table)
            condition += QStringLiteral(" AND %1 NOT IN (SELECT %2 FROM %3 AS o WHERE %4)")
                             .arg(m_dialect.canonicalId(value), m_dialect.canonicalId(other), twins.table,
                                  m_dialect.isOddId(other));
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
    m_dialect.lockOthersOut(m_statements);
    TableAttachments attachments(m_statements);
    for (const IdColumns& table : tables) {
        if (hasChangedKeys(table))
            attachments.detachForeignKeys(table.table, TableAttachments::Rows::Kept);
    }
    // Once all other keys are changed, those still spelled otherwise are of rows that stay, and so are references to
    // them.
    for (const IdColumns& table : tables) {
        if (!table.key.isEmpty())
            changeColumn(table.table, table.key, isChangeableKey(table));
    }
    for (const IdColumns& table : tables) {
        for (const QString& column : table.references)
            changeColumn(table.table, column, isChangeable(table.table, column));
        changeLists(table);
    }
    attachments.attachForeignKeys();
    if (!transaction.commit())
        throw ExecutionException(transaction.lastError().toLocal8Bit().constData(), transaction.isUnavailable());
    for (const QString& line : qAsConst(m_report))
        qCWarning(lcMigrationLog).noquote() << line;
}

void IdSpelling::changeColumn(const QString& table, const QString& column, const QString& condition)
{
    const int rows = m_statements.execute(
        QStringLiteral("UPDATE %1 SET %2 = %3 WHERE %4").arg(table, column, m_dialect.canonicalId(column), condition),
        {});
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
                               .arg(table.list, table.key, table.table, mayBeOddList(table.list)))) {
        const QString list = row.first().toString();
        const QString canonical = canonicalList(list, m_twins);
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
