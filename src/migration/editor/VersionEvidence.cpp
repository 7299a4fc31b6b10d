#include "migration/editor/VersionEvidence.h"

#include "database/DbException.h"
#include "database/IDatabase.h"
#include "migration/MigrationStep.h"
#include "migration/SchemaVersion.h"
#include "migration/editor/EditorTables.h"

#include <QSqlRecord>

namespace DataAccess::Manager {

namespace {

/// A table, or a column of it, and the version of the step that has to do with it.
struct Mark
{
    quint32 version;
    QString table;
    QString column = {};
};

/// What each step creates that was not there before.
QVector<Mark> created()
{
    return {{2, QStringLiteral("ce_segment_detail")},
            {2, QStringLiteral("ce_station"), QStringLiteral("description")},
            {2, QStringLiteral("ce_station"), QStringLiteral("image")},
            {2, QStringLiteral("ce_segment"), QStringLiteral("detail")},
            {2, QStringLiteral("ce_cable"), QStringLiteral("type")},
            {3, QStringLiteral("ce_segment"), QStringLiteral("installationdate")},
            {5, QStringLiteral("evaluation")},
            {6, QStringLiteral("qor_rating")},
            {7, QStringLiteral("ce_cable"), QStringLiteral("importance")},
            {7, QStringLiteral("cablebook_measures")}};
}

/// Where each step deletes rows.
QVector<Mark> emptied()
{
    QVector<Mark> marks;
    for (const QString& table : EditorTables::unversioned())
        marks.append({1, table});
    return marks + QVector<Mark>{{4, QStringLiteral("ce_insulation")},
                                 {4, QStringLiteral("ce_segment_detail")},
                                 {8, QStringLiteral("ce_segment_detail")},
                                 {9, QStringLiteral("ce_switchgear")}};
}

/// What is there of the marks whose step is later than @p version: each table or column, if its table has rows.
QStringList presentAfter(quint32 version, const QVector<Mark>& marks, MigrationStep& step)
{
    QStringList found;
    const QStringList tables = step.tables();
    for (const Mark& mark : marks) {
        for (const QString& table : tables) {
            if (mark.version <= version || table.compare(mark.table, Qt::CaseInsensitive) != 0)
                continue;
            const QString select = QStringLiteral("SELECT * FROM \"%1\" LIMIT 1").arg(table);
            if (step.rows(select).isEmpty())
                continue;
            if (mark.column.isEmpty())
                found.append(table);
            else if (step.database().Exec(select).record().contains(mark.column))
                found.append(table + QLatin1Char('.') + mark.column);
        }
    }
    found.removeDuplicates();
    return found;
}

} // namespace

void VersionEvidence::require(MigrationStep& step, quint32 version)
{
    const QString endangered = presentAfter(version, emptied(), step).join(QStringLiteral(", "));
    if (endangered.isEmpty())
        return;
    // The next step may have been done without its version being stored.
    const QStringList later = presentAfter(version + 1, created(), step);
    const QString feature = QStringLiteral("CablesVersion");
    QString contradiction;
    if (!later.isEmpty())
        contradiction = QStringLiteral("later steps have made %1").arg(later.join(QStringLiteral(", ")));
    else if (version == 0 && SchemaVersion(feature).hasTraces(step))
        contradiction = QStringLiteral("the settings tables have had a version");
    else
        return;
    const QString text =
        QStringLiteral(
            "%1 reads as %2, which cannot be: %3. To go on would discard rows of %4, so nothing was changed. "
            "Restore the version (in features a row with the name '%1', the module '' and the type 'I', in "
            "feature_defaults its value, a number) or the database from a backup; delete the rows first if "
            "they are of no use.")
            .arg(feature, QString::number(version), contradiction, endangered);
    throw Exceptions::ExecutionException(text.toLocal8Bit().constData());
}

} // namespace DataAccess::Manager
