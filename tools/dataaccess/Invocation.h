#pragma once

#include "ProgressLine.h"
#include "ToolError.h"

#include <QCommandLineParser>
#include <QJsonObject>
#include <QStringList>

#include <functional>

/// One run of a command: what it was told, and where it says what it has to say.
class Invocation
{
public:
    explicit Invocation(const QCommandLineParser& parser)
        : m_parser(parser)
    {}

    QString argument(int index) const { return m_parser.positionalArguments().value(index); }
    QStringList arguments() const { return m_parser.positionalArguments(); }
    bool has(const char* option) const { return m_parser.isSet(QString::fromLatin1(option)); }
    QString value(const char* option) const { return m_parser.value(QString::fromLatin1(option)); }
    bool isQuiet() const { return has("quiet"); }
    bool isJson() const { return has("json"); }

    /// A line of the answer, for people; with --json the answer is the document alone.
    void print(const QString& line) const;
    /// Something that is no answer, on standard error; nothing with --quiet.
    void note(const QString& line) const;
    /// Something that has gone wrong, on standard error in any case.
    static void warn(const QString& line);
    /// The answer as a document, when --json asks for one.
    void answer(const QJsonObject& document) const;
    /// The progress of @p what, counted in @p unit; a callback for long operations.
    std::function<bool(qint64, qint64)> progress(const QString& what, const QString& unit) const;

private:
    const QCommandLineParser& m_parser;
};

/// A command of the tool.
struct Command
{
    QString name;
    QString summary;
    /// The arguments, as the usage shows them; those in brackets can be left out.
    QString arguments;
    /// What --help says beside the summary: particulars and examples.
    QString help;
    QList<QCommandLineOption> options;
    int leastArguments;
    int mostArguments;
    ExitCode (*run)(const Invocation& invocation);
};

Command infoCommand();
Command checkCommand();
Command backupCommand();
Command restoreCommand();
Command migrateCommand();
Command copyCommand();
Command dumpCommand();
Command loadCommand();
Command reportCommand();
Command configCommand();

/// "1 row", "2 rows".
QString counted(qint64 number, const char* noun);
/// The option that allows a command to replace what is there.
QCommandLineOption forceOption(const char* description);
