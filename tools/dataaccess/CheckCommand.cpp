#include "Backup.h"
#include "DatabaseCheck.h"
#include "Invocation.h"
#include "OpenedDatabase.h"
#include "database/backends/SqliteBackup.h"
#include "transfer/private/TableRows.h"

#include <QJsonArray>

#include <algorithm>
#include <optional>

using namespace DataAccess;

namespace {

/// The faults of the file itself. Nothing that is read from a damaged one can be relied upon.
QVector<Finding> fileFaults(const DatabaseAddress& address, bool isDeep)
{
    QVector<Finding> found;
    if (address.isPostgres() || kindOf(address.path()) != FileKind::SQLite3)
        return found;
    for (const QString& fault :
         Database::sqliteFaults(address.path(), isDeep).split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        found.append({QStringLiteral("file damaged"), {}, {}, {}, fault, {}, {}});
    return found;
}

/// Sets right what has one right answer, in one transaction; gives the number of rows.
int repair(const DatabaseAddress& address, const QVector<Finding>& found, const Invocation& invocation)
{
    OpenedDatabase opened(address, OpenedDatabase::Access::Write, invocation);
    Interfaces::IDatabase& db = opened.database();
    Database::Transaction transaction = db.WriteTransaction();
    if (!transaction.isOpen())
        throw ToolError(Unavailable, QStringLiteral("%1 is locked").arg(address.text),
                        QStringLiteral("Try again when no program writes to it."));
    int rows = 0;
    // References go before the ids that they lead to.
    for (auto finding = found.rbegin(); finding != found.rend(); ++finding) {
        if (finding->repair.isEmpty())
            continue;
        const auto writer = db.Write(finding->repair, [] {});
        if (finding->fault == QLatin1String("value does not convert"))
            writer->values().bindValue(QStringLiteral(":value"), true);
        else
            writer->values().bindValue(QStringLiteral(":value"), finding->value);
        writer->values().bindValue(QStringLiteral(":id"), finding->id);
        writer->run();
        writer->finish();
        ++rows;
    }
    if (!transaction.commit())
        throw ToolError(Failed, QStringLiteral("The repairs of %1 can't be stored").arg(address.text),
                        QStringLiteral("Nothing was changed."));
    return rows;
}

QJsonArray show(const QVector<Finding>& found, const Invocation& invocation)
{
    QJsonArray list;
    for (const Finding& finding : found) {
        QStringList place{finding.table, finding.id, finding.column};
        place.removeAll(QString());
        const QString where = place.isEmpty() ? QStringLiteral("database") : place.join(QLatin1Char(' '));
        invocation.print(QStringLiteral("%1: %2: %3%4")
                             .arg(where, finding.fault, finding.text,
                                  finding.repair.isEmpty() ? QString() : QStringLiteral(" (--repair sets it right)")));
        list.append(QJsonObject{{QStringLiteral("fault"), finding.fault},
                                {QStringLiteral("table"), finding.table},
                                {QStringLiteral("id"), finding.id},
                                {QStringLiteral("column"), finding.column},
                                {QStringLiteral("text"), finding.text},
                                {QStringLiteral("repairable"), !finding.repair.isEmpty()}});
    }
    return list;
}

/// Backs the database up before it is repaired, if there is something to repair; gives the path.
QString backupForRepair(OpenedDatabase& opened, const QVector<Finding>& found, const Invocation& invocation)
{
    const bool canRepair =
        std::any_of(found.begin(), found.end(), [](const Finding& finding) { return !finding.repair.isEmpty(); });
    if (!invocation.has("repair") || !canRepair)
        return {};
    if (opened.address().isLegacy())
        throw ToolError(Failed, QStringLiteral("A legacy file is never written"),
                        QStringLiteral("Copy it into a new file with \"dataaccess copy\", and repair that."));
    return Backup::makeBefore("repair", opened, invocation);
}

ExitCode check(const Invocation& invocation)
{
    const DatabaseAddress address = DatabaseAddress::parse(invocation.argument(0));
    QJsonObject document{{QStringLiteral("database"), address.text}};
    QString backup;
    QVector<Finding> found;
    std::optional<OpenedDatabase> opened;
    try {
        opened.emplace(address, OpenedDatabase::Access::Read, invocation);
    } catch (const ToolError&) {
        // A damaged file may not even open: its faults are the answer then.
        found = fileFaults(address, invocation.has("deep"));
        if (found.isEmpty())
            throw;
    }
    if (opened)
        found = fileFaults(address, invocation.has("deep"));
    if (found.isEmpty()) {
        opened->requireCurrentSchema();
        found = DatabaseCheck(opened->database(), invocation.has("deep"))
                    .run(invocation.progress(QStringLiteral("Check"), QStringLiteral("tables")));
        backup = backupForRepair(*opened, found, invocation);
    }
    opened.reset();
    document.insert(QStringLiteral("findings"), show(found, invocation));
    if (!backup.isEmpty())
        document.insert(QStringLiteral("backup"), backup);
    int repaired = 0;
    if (!backup.isEmpty()) {
        repaired = repair(address, found, invocation);
        invocation.print(
            QStringLiteral("%1 of %2 set right.").arg(QString::number(repaired), counted(found.size(), "fault")));
    } else {
        invocation.print(found.isEmpty()
                             ? QStringLiteral("%1 is sound.").arg(address.text)
                             : QStringLiteral("%1 has %2.").arg(address.text, counted(found.size(), "fault")));
    }
    document.insert(QStringLiteral("repaired"), repaired);
    invocation.answer(document);
    return repaired == found.size() ? Succeeded : FaultsFound;
}

} // namespace

Command checkCommand()
{
    return {
        QStringLiteral("check"),
        QStringLiteral("Look for what is wrong in a database"),
        QStringLiteral("DB"),
        QStringLiteral("Looks at the file, at the tables, columns and keys, and for ids that are none, doubled, in\n"
                       "capitals or lead nowhere, values that do not convert, images and documents that can't be\n"
                       "read, and ratings that belong to nothing. Each finding names table, id and column; the exit\n"
                       "code is 3 then. Rows that are marked deleted may refer to what is gone.\n\n"
                       "Examples:\n"
                       "  dataaccess check --deep network.vbk\n"
                       "  dataaccess check --json @default | jq '.findings[].id'\n"),
        {{QStringLiteral("deep"), QStringLiteral("Look at every index entry and every text, too.")},
         {QStringLiteral("repair"),
          QStringLiteral("After a backup, set right what has one right answer: capitals in ids, and truth values that "
                         "are neither 0 nor 1.")}},
        1,
        1,
        &check};
}
