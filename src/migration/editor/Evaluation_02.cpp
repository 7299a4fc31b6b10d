#include "database/LoggingCategories.h"
#include "database/backends/SchemaDialect.h"
#include "entities/qor/QorUuidHelpers.h"
#include "migration/SchemaChange.h"

#include <QSet>

#include <algorithm>

namespace DataAccess::Manager::EditorSteps {

namespace {

/// Copies the evaluations of what one table lists.
struct Pass
{
    QString table;
    QString source;
};

QVector<Pass> passes()
{
    return {
        {QStringLiteral("measures"),
         QStringLiteral("m.modeid,  m.measure_date FROM evaluation AS e JOIN measures AS m on e.mid = m.id")},
        {QStringLiteral("ce_cable"),
         QStringLiteral("NULL,  e.timestamp FROM evaluation AS e JOIN ce_cable AS c on e.cid = c.id")},
        {QStringLiteral("pd_task"),
         QStringLiteral("NULL,  t.creationdate FROM evaluation AS e JOIN pd_task AS t on e.tid = t.id")},
    };
}

QString ratingId(const QVariant& evaluationId)
{
    return QOR::Entities::QorUuidHelpers::uuidFromInt(evaluationId.toLongLong()).toString();
}

QSet<QString> ratingIds(SchemaChange& schema)
{
    QSet<QString> ids;
    for (const QVariantList& row : schema.rows(QStringLiteral("SELECT id FROM qor_rating")))
        ids.insert(row.first().toString());
    return ids;
}

/// Deletes the copies of evaluations that an earlier pass has copied.
void removeDoubles(SchemaChange& schema, const StatementRunner::Rows& evaluations)
{
    const QSet<QString> known = ratingIds(schema);
    QVariantList doubles;
    for (const QVariantList& row : evaluations) {
        const QString copy = row.first().toString();
        if (known.contains(copy) && known.contains(ratingId(row.first())))
            doubles.append(copy);
    }
    if (!doubles.isEmpty())
        schema.executeBatch(QStringLiteral("DELETE FROM qor_rating WHERE id = ?"), {doubles});
}

/// How many of the evaluations no pass has copied.
int countNotCopied(SchemaChange& schema, const StatementRunner::Rows& evaluations)
{
    const QSet<QString> copied = ratingIds(schema);
    return static_cast<int>(std::count_if(evaluations.begin(), evaluations.end(), [&](const QVariantList& row) {
        return !copied.contains(ratingId(row.first()));
    }));
}

/// Turns the integer ids of a table into identifiers; others stay.
void setUuidAsId(SchemaChange& schema, const QString& tableName)
{
    for (const QVariantList& row : schema.rows(QStringLiteral("SELECT id FROM %1").arg(tableName))) {
        const QString id = row.first().toString();
        const qint64 number = id.toLongLong();
        if (QString::number(number) != id)
            continue;
        schema.execute(
            QStringLiteral("UPDATE %1 SET \"id\" = :id WHERE id = %2").arg(tableName, schema.dialect().asText(number)),
            {{QStringLiteral(":id"), QOR::Entities::QorUuidHelpers::uuidFromInt(number).toString()}});
    }
}

void copyEvaluations(SchemaChange& schema)
{
    const StatementRunner::Rows evaluations = schema.rows(QStringLiteral("SELECT id FROM evaluation"));
    if (evaluations.isEmpty())
        return;
    const QStringList tables = schema.tables();
    bool complete = true;
    for (const Pass& pass : passes()) {
        if (!tables.contains(pass.table)) {
            qCWarning(lcMigrationEditor) << "Evaluations are not copied for want of the table" << pass.table;
            complete = false;
            continue;
        }
        schema.execute(
            QStringLiteral("INSERT INTO qor_rating (id,  mid,  tid,  cid,  comment,  evaluation,  automatic,  "
                           "oldcable,  eventselectionmodel,  modeid,  measuretime) SELECT  e.id,  e.mid,  "
                           "e.tid,  e.cid,  e.comment,  e.evaluation,  e.manual,  e.oldcable,  "
                           "e.eventselectionmodel,  ") +
            pass.source);
        removeDoubles(schema, evaluations);
        // The name that another compiler gave it stays in the log.
        schema.runPart("unsigned int __cdecl DataAccess::Manager::EditorMigrationManager::setUuidAsId(class "
                       "DataAccess::Interfaces::IDatabase &,const class QString &)",
                       [&] { setUuidAsId(schema, QStringLiteral("qor_rating")); });
    }
    const int notCopied = countNotCopied(schema, evaluations);
    if (complete || notCopied < evaluations.size())
        schema.addMessage(QStringLiteral(
            "Cable and measurement ratings have been migrated that are likely from a Orvane installation on this computer. "
            "In order for these migrated ratings to continue to display correctly, you will need to upgrade Orvane to "
            "version 4.0.0 or later."));
    const QString table = QStringLiteral("evaluation");
    if (complete || notCopied == 0) {
        schema.execute(QStringLiteral("DELETE FROM ") + table);
        schema.tellDiscarded(table, notCopied);
    } else {
        // What a missing table has kept from being copied must not be lost.
        qCWarning(lcMigrationEditor) << "Evaluations that could not be migrated stay in" << table << ":" << notCopied;
    }
}

} // namespace

void Evaluation_02(SchemaChange& schema)
{
    schema.createTables();
    copyEvaluations(schema);
}

} // namespace DataAccess::Manager::EditorSteps
