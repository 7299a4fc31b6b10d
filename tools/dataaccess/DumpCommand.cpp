#include "Invocation.h"
#include "NewFile.h"
#include "OpenedDatabase.h"
#include "TargetDatabase.h"
#include "transfer/Dump.h"

#include <QFile>

#include <cstdio>
#include <optional>

using namespace DataAccess;

namespace {

ExitCode dump(const Invocation& invocation)
{
    const bool isToFile = invocation.has("output");
    const QString path = invocation.value("output");
    const DatabaseAddress address = DatabaseAddress::parse(invocation.argument(0));
    if (isToFile)
        refuseToReplace(address.path(), path);
    else if (invocation.isJson())
        throw ToolError(WrongUsage, QStringLiteral("With --json the dump itself needs a file"),
                        QStringLiteral("Name it with --output."));
    OpenedDatabase opened(address, OpenedDatabase::Access::Read, invocation);
    opened.requireCurrentSchema();
    std::optional<NewFile> whole;
    QFile file;
    if (!isToFile) {
        file.open(stdout, QIODevice::WriteOnly);
    } else {
        whole.emplace(path, invocation.has("force"));
        whole->begin(opened.address().path());
        file.setFileName(whole->unfinished());
        file.open(QIODevice::WriteOnly);
    }
    const qint64 rows =
        Transfer::dump(opened.database(), file, invocation.progress(QStringLiteral("Dump"), QStringLiteral("rows")));
    if (!file.flush())
        throw ToolError(Failed, QStringLiteral("The dump can't be written: %1").arg(file.errorString()));
    file.close();
    if (whole) {
        whole->publish();
        invocation.print(
            QStringLiteral("%1 of %2 written into %3.").arg(counted(rows, "row"), opened.address().text, path));
    }
    invocation.answer({{QStringLiteral("rows"), rows}, {QStringLiteral("file"), path}});
    return Succeeded;
}

ExitCode load(const Invocation& invocation)
{
    const QString path = invocation.argument(0);
    QFile file(path);
    const bool isOpen =
        path == QLatin1String("-") ? file.open(stdin, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly);
    if (!isOpen)
        throw ToolError(Failed, QStringLiteral("%1 can't be read: %2").arg(path, file.errorString()));
    refuseToReplace(path, DatabaseAddress::parse(invocation.argument(1)).path());
    TargetDatabase target(invocation.argument(1), NewFile::Leftover::Removed, false, invocation);
    if (target.hadRows() && !invocation.has("force"))
        throw ToolError(Failed, QStringLiteral("%1 holds rows already").arg(target.address().text),
                        QStringLiteral("The option --force replaces them."));
    qint64 rows = 0;
    try {
        rows = Transfer::load(file, target.database(), target.hadRows(),
                              invocation.progress(QStringLiteral("Load"), QStringLiteral("bytes")));
    } catch (const Transfer::ContentError& error) {
        throw ToolError(Failed, QStringLiteral("%1: %2").arg(path, QString::fromUtf8(error.what())),
                        QStringLiteral("Nothing was loaded."));
    }
    target.complete();
    invocation.print(QStringLiteral("%1 of %2 loaded into %3.").arg(counted(rows, "row"), path, target.address().text));
    invocation.answer({{QStringLiteral("rows"), rows}, {QStringLiteral("database"), target.address().text}});
    return Succeeded;
}

} // namespace

Command dumpCommand()
{
    return {
        QStringLiteral("dump"),
        QStringLiteral("Write all rows as lines of JSON"),
        QStringLiteral("DB"),
        QStringLiteral("The first line says the versions of the schema, the last one the number of rows. Databases\n"
                       "that hold the same give the same bytes, whatever their kind.\n\n"
                       "Examples:\n"
                       "  dataaccess dump network.vbk | grep ce_cable\n"
                       "  diff <(dataaccess dump old.vbk) <(dataaccess dump new.vbk)\n"),
        {{{QStringLiteral("o"), QStringLiteral("output")},
          QStringLiteral("Write into FILE, not to standard output."),
          QStringLiteral("FILE")},
         forceOption("Replace FILE if it exists.")},
        1,
        1,
        &dump};
}

Command loadCommand()
{
    return {QStringLiteral("load"),
            QStringLiteral("Write the rows of a dump into a database"),
            QStringLiteral("FILE DB"),
            QStringLiteral("All rows or none: in one transaction. \"-\" is standard input.\n\n"
                           "Examples:\n"
                           "  dataaccess load network.jsonl new.vbk\n"
                           "  dataaccess dump old.vbk | dataaccess load - postgresql://server/network\n"),
            {forceOption("Replace the rows that DB holds.")},
            2,
            2,
            &load};
}
