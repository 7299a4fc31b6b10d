#include "database/LoggingCategories.h"
#include "entities/qor/QorUuidHelpers.h"
#include "migration/MigrationStep.h"
#include "migration/editor/EditorMigrationManager.h"
#include "migration/editor/EditorTables.h"

#include <QSet>

#include <algorithm>

namespace DataAccess::Manager {

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

QSet<QString> ratingIds(MigrationStep& step)
{
    QSet<QString> ids;
    for (const QVariantList& row : step.rows(QStringLiteral("SELECT id FROM qor_rating")))
        ids.insert(row.first().toString());
    return ids;
}

/// Deletes the copies of evaluations that an earlier pass has copied.
void removeDoubles(MigrationStep& step, const StatementRunner::Rows& evaluations)
{
    const QSet<QString> known = ratingIds(step);
    QVariantList doubles;
    for (const QVariantList& row : evaluations) {
        const QString copy = row.first().toString();
        if (known.contains(copy) && known.contains(ratingId(row.first())))
            doubles.append(copy);
    }
    if (!doubles.isEmpty())
        step.executeBatch(QStringLiteral("DELETE FROM qor_rating WHERE id = ?"), {doubles});
}

/// How many of the evaluations no pass has copied.
int countNotCopied(MigrationStep& step, const StatementRunner::Rows& evaluations)
{
    const QSet<QString> copied = ratingIds(step);
    return static_cast<int>(std::count_if(evaluations.begin(), evaluations.end(), [&](const QVariantList& row) {
        return !copied.contains(ratingId(row.first()));
    }));
}

} // namespace

void EditorMigrationManager::copyEvaluations(MigrationStep& step)
{
    const StatementRunner::Rows evaluations = step.rows(QStringLiteral("SELECT id FROM evaluation"));
    if (evaluations.isEmpty())
        return;
    const QStringList tables = step.tables();
    bool complete = true;
    for (const Pass& pass : passes()) {
        if (!tables.contains(pass.table)) {
            qCWarning(lcMigrationEditor) << "Evaluations are not copied for want of the table" << pass.table;
            complete = false;
            continue;
        }
        step.execute(QStringLiteral("INSERT INTO qor_rating (id,  mid,  tid,  cid,  comment,  evaluation,  automatic,  "
                                    "oldcable,  eventselectionmodel,  modeid,  measuretime) SELECT  e.id,  e.mid,  "
                                    "e.tid,  e.cid,  e.comment,  e.evaluation,  e.manual,  e.oldcable,  "
                                    "e.eventselectionmodel,  ") +
                     pass.source);
        removeDoubles(step, evaluations);
        step.require(setUuidAsId(step.database(), QStringLiteral("qor_rating")));
    }
    const int notCopied = countNotCopied(step, evaluations);
    if (complete || notCopied < evaluations.size())
        m_messages.append(QStringLiteral(
            "Cable and measurement ratings have been migrated that are likely from a Orvane installation on this computer. "
            "In order for these migrated ratings to continue to display correctly, you will need to upgrade Orvane to "
            "version 4.0.0 or later."));
    const QString table = QStringLiteral("evaluation");
    if (complete || notCopied == 0) {
        step.execute(QStringLiteral("DELETE FROM ") + table);
        step.tellDiscarded(table, notCopied);
    } else {
        // What a missing table has kept from being copied must not be lost.
        qCWarning(lcMigrationEditor) << "Evaluations that could not be migrated stay in" << table << ":" << notCopied;
    }
}

bool EditorMigrationManager::Evaluation_02()
{
    return runStep(Q_FUNC_INFO, [this](MigrationStep& step) {
        createTable(step, EditorTables::rating06());
        copyEvaluations(step);
    });
}

} // namespace DataAccess::Manager
