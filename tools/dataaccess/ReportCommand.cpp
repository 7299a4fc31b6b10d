#include "Invocation.h"
#include "NewFile.h"
#include "OpenedDatabase.h"
#include "report/ReportPage.h"

#include <QFile>
#include <QFileInfo>

namespace {

ExitCode report(const Invocation& invocation)
{
    const QString path = invocation.argument(1);
    const DatabaseAddress address = DatabaseAddress::parse(invocation.argument(0));
    refuseToReplace(address.path(), path);
    OpenedDatabase opened(address, OpenedDatabase::Access::Read, invocation);
    opened.requireCurrentSchema();
    NewFile whole(path, invocation.has("force"));
    const NetworkData data =
        NetworkData::read(opened.database(), invocation.progress(QStringLiteral("Report"), QStringLiteral("parts")));
    whole.begin(opened.address().path());
    QFile file(whole.unfinished());
    if (!file.open(QIODevice::WriteOnly))
        throw ToolError(Failed, QStringLiteral("%1 can't be written: %2").arg(path, file.errorString()));
    ReportPage(data, file).write(address.isPostgres() ? address.text : QFileInfo(address.text).fileName());
    if (!file.flush())
        throw ToolError(Failed, QStringLiteral("%1 can't be written: %2").arg(path, file.errorString()));
    file.close();
    whole.publish();
    invocation.print(
        QStringLiteral("%1 of %2 shown in %3.").arg(counted(data.cables.size(), "cable"), address.text, path));
    invocation.answer({{QStringLiteral("cables"), data.cables.size()}, {QStringLiteral("file"), path}});
    return Succeeded;
}

} // namespace

Command reportCommand()
{
    return {QStringLiteral("report"),
            QStringLiteral("Show a network as one page for a browser"),
            QStringLiteral("DB OUT.html"),
            QStringLiteral(
                "A plan by coordinates, a table with search, each cable's phases as bars of sections and joints\n"
                "with ratings in colour, and partial-discharge events over the length. Nothing in the file is\n"
                "loaded from elsewhere.\n\n"
                "Examples:\n"
                "  dataaccess report network.vbk network.html\n"
                "  dataaccess report --force @default network.html\n"),
            {forceOption("Replace OUT.html if it exists.")},
            2,
            2,
            &report};
}
