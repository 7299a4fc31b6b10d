// Looks after the databases of the suite: dataaccess COMMAND [OPTION]... [ARGUMENT]...

#include "Interrupt.h"
#include "Invocation.h"
#include "database/DbException.h"
#include "transfer/Progress.h"

#include <QCoreApplication>
#include <QJsonObject>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

bool s_isVerbose = false;

const std::vector<Command>& commands()
{
    static const std::vector<Command> all = {infoCommand(),    checkCommand(), backupCommand(), restoreCommand(),
                                             migrateCommand(), copyCommand(),  dumpCommand(),   loadCommand(),
                                             reportCommand(),  configCommand()};
    return all;
}

/// The library's log: for who asks for it.
void log(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (s_isVerbose)
        std::fprintf(stderr, "%s\n", qFormatLogMessage(type, context, message).toUtf8().constData());
}

QString overview()
{
    QString text = QStringLiteral("Usage: dataaccess COMMAND [OPTION]... [ARGUMENT]...\n\nCommands:\n");
    for (const Command& command : commands())
        text += QStringLiteral("  %1 %2\n").arg(command.name, -9).arg(command.summary);
    return text + QStringLiteral(
                      "\nA database is the path of a file, \"@\" with the name of a stored configuration, or a\n"
                      "PostgreSQL address (postgresql://user@host/database). \"dataaccess COMMAND --help\" says more.\n"
                      "\nExit codes: 0 well, 1 failed, 2 wrong usage, 3 faults found, 4 newer schema, 5 migration\n"
                      "needed, 6 locked or not reachable.\n");
}

QString helpOf(const Command& command, const QCommandLineParser& parser)
{
    // The parser's own usage line knows nothing of commands.
    QString options = parser.helpText();
    options.remove(0, options.indexOf(QLatin1String("\nOptions:")));
    return QStringLiteral("Usage: dataaccess %1 [OPTION]... %2\n%3.\n%4\n%5")
        .arg(command.name, command.arguments, command.summary, options, command.help);
}

ToolError usageError(const QString& text, const QString& command = {})
{
    return {WrongUsage, text,
            QStringLiteral("\"dataaccess %1--help\" says how it is used.")
                .arg(command.isEmpty() ? QString() : command + QLatin1Char(' '))};
}

ExitCode runCommand(const Command& command, QStringList arguments, QCommandLineParser& parser)
{
    arguments.removeAt(1);
    parser.addOptions(
        {{{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Say how this is used.")},
         {QStringLiteral("json"), QStringLiteral("Answer with one JSON document.")},
         {{QStringLiteral("q"), QStringLiteral("quiet")}, QStringLiteral("Show no progress, no notes.")},
         {{QStringLiteral("v"), QStringLiteral("verbose")}, QStringLiteral("Show the log on standard error.")}});
    parser.addOptions(command.options);
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsOptions);
    const bool isParsed = parser.parse(arguments);
    if (isParsed && parser.isSet(QStringLiteral("help"))) {
        std::fputs(qPrintable(helpOf(command, parser)), stdout);
        return Succeeded;
    }
    if (!isParsed)
        throw usageError(parser.errorText(), command.name);
    const int given = parser.positionalArguments().size();
    if (given < command.leastArguments || given > command.mostArguments)
        throw usageError(QStringLiteral("\"%1\" takes %2").arg(command.name, command.arguments), command.name);
    s_isVerbose = parser.isSet(QStringLiteral("verbose"));
    return command.run(Invocation(parser));
}

ExitCode run(const QStringList& arguments, QCommandLineParser& parser)
{
    const QString name = arguments.value(1);
    if (name == QLatin1String("--help") || name == QLatin1String("-h") || name == QLatin1String("help")) {
        std::fputs(qPrintable(overview()), stdout);
        return Succeeded;
    }
    if (name == QLatin1String("--version")) {
        std::puts("dataaccess " DATAACCESS_VERSION);
        return Succeeded;
    }
    const auto command =
        std::find_if(commands().begin(), commands().end(), [&](const Command& one) { return one.name == name; });
    if (command == commands().end())
        throw usageError(name.isEmpty() ? QStringLiteral("A command is missing")
                                        : QStringLiteral("There is no command \"%1\"").arg(name));
    return runCommand(*command, arguments, parser);
}

ExitCode fail(const QCommandLineParser& parser, ExitCode code, QString text, const QString& advice = {})
{
    text = text.simplified(); // A server points at a place of the statement, in lines of their own.
    if (!text.endsWith(QLatin1Char('.')))
        text += QLatin1Char('.');
    Invocation::warn(QStringLiteral("dataaccess: ") + text +
                     (advice.isEmpty() ? QString() : QLatin1Char(' ') + advice));
    try {
        if (parser.isSet(QStringLiteral("json")))
            Invocation(parser).answer({{QStringLiteral("error"), text}, {QStringLiteral("exitCode"), code}});
    } catch (const ToolError&) {
        // Nobody reads what could be said on standard output any more.
    }
    return code;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("dataaccess"));
    qInstallMessageHandler(log);
    Interrupt::keep();
    QCommandLineParser parser;
    const QString verbose = QStringLiteral("The option --verbose shows the log.");
    try {
        return run(QCoreApplication::arguments(), parser);
    } catch (const ToolError& error) {
        return fail(parser, error.code(), error.text(), error.advice());
    } catch (const DataAccess::Transfer::Cancelled&) {
        return fail(parser, Failed, QStringLiteral("Stopped; nothing is left half done"));
    } catch (const DataAccess::Transfer::ContentError& error) {
        return fail(parser, Failed, QString::fromUtf8(error.what()),
                    QStringLiteral("\"dataaccess check\" lists all faults."));
    } catch (const DataAccess::Exceptions::DbException& error) {
        return fail(parser, error.isUnavailable() ? Unavailable : Failed, QString::fromLocal8Bit(error.what()),
                    error.isUnavailable() ? QStringLiteral("Try again when it can be reached and is not locked.")
                                          : verbose);
    } catch (const std::exception& error) {
        return fail(parser, Failed, QString::fromUtf8(error.what()), verbose);
    }
}
