#include "Invocation.h"
#include "OpenedDatabase.h"
#include "TargetDatabase.h"
#include "transfer/DatabaseCopy.h"
#include "transfer/private/TableRows.h"

#include <QJsonArray>
#include <QThread>

#include <optional>

using namespace DataAccess;

namespace {

void refuseSame(bool isSame, const DatabaseAddress& source)
{
    if (isSame)
        throw ToolError(WrongUsage, QStringLiteral("%1 is both the original and the copy").arg(source.text));
}

/// What only one database has, by whatever address it is reached.
QString identityOnServer(Interfaces::IDatabase& db)
{
    return Transfer::scalar(db, QStringLiteral("SELECT extract(epoch FROM pg_postmaster_start_time())::text || ' ' || "
                                               "oid::text FROM pg_database WHERE datname = current_database()"))
        .toString();
}

/// Keeps a second copy into the same database on a server away, as long as this one's connection lasts.
void lockOnServer(TargetDatabase& target)
{
    if (!target.address().isPostgres())
        return;
    // The server may take a while to notice that a run that was killed is gone.
    constexpr int attempts = 50;
    constexpr unsigned long pause = 100;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const QVariant isLocked = Transfer::scalar(
            target.database(), QStringLiteral("SELECT pg_try_advisory_lock(hashtext('DataAccess copy'))"));
        if (isLocked.toBool())
            return;
        QThread::msleep(pause);
    }
    throw ToolError(Unavailable, QStringLiteral("Another copy into %1 is under way").arg(target.address().text),
                    QStringLiteral("Try again when it has ended."));
}

void prepareRows(TargetDatabase& target, const Invocation& invocation)
{
    Interfaces::IDatabase& db = target.database();
    const bool isUnfinished = Transfer::hasUnfinishedCopy(db);
    if (invocation.has("resume") || (!isUnfinished && !target.hadRows()))
        return;
    if (!invocation.has("force"))
        throw ToolError(Failed,
                        isUnfinished ? QStringLiteral("%1 holds a copy that was broken off").arg(target.address().text)
                                     : QStringLiteral("%1 holds rows already").arg(target.address().text),
                        isUnfinished ? QStringLiteral("The option --resume completes it, --force begins anew.")
                                     : QStringLiteral("The option --force replaces them."));
    Database::Transaction transaction = db.WriteTransaction();
    Transfer::deleteAllRows(db);
    if (isUnfinished)
        db.Exec(QStringLiteral("DROP TABLE dataaccess_copy"));
    if (!transaction.commit())
        throw ToolError(Failed, QStringLiteral("The rows of %1 can't be deleted").arg(target.address().text));
}

QVector<Transfer::TableDigest> copyRows(OpenedDatabase& from, TargetDatabase& target, const Invocation& invocation)
{
    try {
        return Transfer::DatabaseCopy(from.database(), target.database())
            .run(invocation.progress(QStringLiteral("Copy"), QStringLiteral("rows copied and compared")));
    } catch (const Transfer::Cancelled&) {
        throw ToolError(Failed, QStringLiteral("Stopped: %1 is not complete").arg(target.address().text),
                        QStringLiteral("The option --resume completes it."));
    } catch (const Transfer::ContentError& error) {
        throw ToolError(Failed, QString::fromUtf8(error.what()),
                        QStringLiteral("\"dataaccess check\" lists all faults of the original; a copy that was resumed "
                                       "after changes there has to begin anew, with --force."));
    }
}

ExitCode copy(const Invocation& invocation)
{
    const DatabaseAddress source = DatabaseAddress::parse(invocation.argument(0));
    const QString targetName = invocation.argument(1);
    source.requireExists();
    if (invocation.has("resume") && invocation.has("force"))
        throw ToolError(WrongUsage, QStringLiteral("--resume and --force exclude each other"));
    refuseSame(isReplaced(source.path(), DatabaseAddress::parse(targetName).path()), source);
    OpenedDatabase from(source, OpenedDatabase::Access::Read, invocation);
    from.requireCurrentSchema();
    TargetDatabase target(targetName, NewFile::Leftover::Kept, invocation.has("resume"), invocation);
    refuseSame(source.isPostgres() && target.address().isPostgres() &&
                   identityOnServer(from.database()) == identityOnServer(target.database()),
               source);
    lockOnServer(target);
    prepareRows(target, invocation);
    const QVector<Transfer::TableDigest> tables = copyRows(from, target, invocation);
    target.complete();

    qint64 rows = 0;
    QJsonArray list;
    for (const Transfer::TableDigest& table : tables) {
        rows += table.rows;
        list.append(QJsonObject{{QStringLiteral("name"), table.table},
                                {QStringLiteral("rows"), table.rows},
                                {QStringLiteral("sha256"), QString::fromLatin1(table.sha256.toHex())}});
    }
    invocation.print(QStringLiteral("%1 of %2 copied into %3; number and digest of every table are the same.")
                         .arg(counted(rows, "row"), source.text, target.address().text));
    invocation.answer({{QStringLiteral("from"), source.text},
                       {QStringLiteral("to"), target.address().text},
                       {QStringLiteral("rows"), rows},
                       {QStringLiteral("tables"), list}});
    return Succeeded;
}

} // namespace

Command copyCommand()
{
    return {
        QStringLiteral("copy"),
        QStringLiteral("Copy all rows into another database, of any kind"),
        QStringLiteral("FROM TO"),
        QStringLiteral("Ids, states, time stamps, texts, images and files stay as they are. The number of rows and a\n"
                       "digest of every table are compared afterwards. A new file gets its name when it is complete;\n"
                       "until then it is TO.part. A copy that was broken off goes on with --resume. FROM can be a\n"
                       "legacy file; it is not changed, and its content is brought up to date on the way.\n\n"
                       "Examples:\n"
                       "  dataaccess copy network.vbk postgresql://server/network\n"
                       "  dataaccess copy --resume network.vbk postgresql://server/network\n"
                       "  dataaccess copy old.db new.vbk\n"),
        {{QStringLiteral("resume"), QStringLiteral("Complete a copy that was broken off.")},
         forceOption("Replace the rows that TO holds.")},
        2,
        2,
        &copy};
}
