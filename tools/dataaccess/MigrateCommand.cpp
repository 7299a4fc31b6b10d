#include "Backup.h"
#include "Invocation.h"
#include "OpenedDatabase.h"
#include "migration/MigrationModule.h"
#include "transfer/private/TableRows.h"

#include <QJsonArray>

using namespace DataAccess;
using Manager::MigrationStep;

namespace {

/// The steps that @p database lacks.
QVector<MigrationStep> missingSteps(OpenedDatabase& database)
{
    QVector<MigrationStep> missing;
    for (const Transfer::SchemaState& schema : database.direct().schemas()) {
        for (const Manager::MigrationModule* const module : Manager::migrationModules()) {
            if (module->feature == schema.feature)
                missing += module->steps.mid(static_cast<int>(schema.found));
        }
    }
    return missing;
}

/// The rows of the tables that a step names, as far as there are any.
QJsonObject rowsOf(Interfaces::IDatabase& db, const QStringList& tables)
{
    QJsonObject rows;
    for (const QString& table : tables) {
        const qint64 count = Transfer::rowCount(db, table);
        if (count > 0)
            rows.insert(table, count);
    }
    return rows;
}

QString textOf(const QJsonObject& rows, const QString& what)
{
    QStringList texts;
    for (auto row = rows.begin(); row != rows.end(); ++row)
        texts.append(QStringLiteral("%1 (%2)").arg(row.key(), counted(row.value().toVariant().toLongLong(), "row")));
    return texts.isEmpty() ? QString() : QStringLiteral("      %1 %2").arg(what, texts.join(QStringLiteral(", ")));
}

QJsonArray showPlan(OpenedDatabase& database, const QVector<MigrationStep>& steps, const Invocation& invocation)
{
    QJsonArray plan;
    for (const MigrationStep& step : steps) {
        const QJsonObject discarded = rowsOf(database.database(), step.discards);
        const QJsonObject rewritten = rowsOf(database.database(), step.rewrites);
        invocation.print(
            QStringLiteral("%1 -> %2 %3: %4").arg(step.feature).arg(step.version).arg(step.name, step.text));
        for (const QString& line : {textOf(discarded, QStringLiteral("may discard rows of")),
                                    textOf(rewritten, QStringLiteral("rewrites"))}) {
            if (!line.isEmpty())
                invocation.print(line);
        }
        plan.append(QJsonObject{{QStringLiteral("feature"), step.feature},
                                {QStringLiteral("version"), static_cast<qint64>(step.version)},
                                {QStringLiteral("name"), step.name},
                                {QStringLiteral("does"), step.text},
                                {QStringLiteral("discards"), discarded},
                                {QStringLiteral("rewrites"), rewritten}});
    }
    return plan;
}

void runSteps(const DatabaseAddress& address, int steps, const Invocation& invocation)
{
    OpenedDatabase database(address, OpenedDatabase::Access::Write, invocation);
    int done = 0;
    const bool isDone = database.direct().migrate([&](const QString& feature, quint32 version) {
        invocation.note(
            QStringLiteral("Step %1 of %2: %3 is %4 now.").arg(++done).arg(steps).arg(feature).arg(version));
    });
    if (!isDone)
        throw ToolError(Failed, QStringLiteral("A step failed; those before it are done, and it left nothing behind"),
                        QStringLiteral("The option --verbose shows the log; the next run goes on with that step."));
    for (const QString& message : database.direct().migrationMessages())
        invocation.print(message);
}

ExitCode migrate(const Invocation& invocation)
{
    const DatabaseAddress address = DatabaseAddress::parse(invocation.argument(0));
    QJsonObject document{{QStringLiteral("database"), address.text}};
    int steps = 0;
    {
        OpenedDatabase database(address, OpenedDatabase::Access::Read, invocation);
        database.refuseNewerSchema();
        const QVector<MigrationStep> missing = missingSteps(database);
        steps = missing.size();
        document.insert(QStringLiteral("steps"), showPlan(database, missing, invocation));
        if (steps == 0)
            invocation.print(QStringLiteral("%1 is up to date.").arg(address.text));
        // A legacy file stays as it is, and is the way back itself, unless its working copy has changes of its own.
        if (steps > 0 && !invocation.has("dry-run") && !invocation.has("no-backup"))
            document.insert(QStringLiteral("backup"), Backup::makeBefore("migration", database, invocation));
    }
    if (steps > 0 && !invocation.has("dry-run")) {
        runSteps(address, steps, invocation);
        invocation.print(QStringLiteral("%1 is up to date now.").arg(address.text));
    }
    invocation.answer(document);
    return steps == 0 || !invocation.has("dry-run") ? Succeeded : MigrationNeeded;
}

} // namespace

Command migrateCommand()
{
    return {
        QStringLiteral("migrate"),
        QStringLiteral("Bring the schema of a database up to date"),
        QStringLiteral("DB"),
        QStringLiteral("Says what is going to be done, backs the database up, and runs the steps, each as a whole.\n"
                       "With --dry-run nothing is changed, and the exit code is 5 when there is something to do. Of a\n"
                       "legacy file the working copy beside it is migrated.\n\n"
                       "Examples:\n"
                       "  dataaccess migrate --dry-run network.vbk\n"
                       "  dataaccess migrate network.vbk\n"),
        {{{QStringLiteral("n"), QStringLiteral("dry-run")}, QStringLiteral("Say what would be done, and do nothing.")},
         {QStringLiteral("no-backup"), QStringLiteral("Make no backup first.")}},
        1,
        1,
        &migrate};
}
