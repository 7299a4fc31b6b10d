#pragma once

#include "support/RunningWorker.h"
#include "support/TestDatabase.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <QUuid>

#include <memory>

/// How a run of the tool ended.
struct Run
{
    int exitCode = -1;
    QByteArray output;
    QString error;

    QJsonObject document() const { return QJsonDocument::fromJson(output).object(); }
};

inline QStringList words(const char* text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '));
}

inline std::unique_ptr<QProcess> start(const QString& program, const QStringList& arguments)
{
    auto process = std::make_unique<QProcess>();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("PGPASSWORD"), TestSupport::serverConfig(QStringLiteral("postgres"))->Password());
    process->setProcessEnvironment(environment);
    process->start(program, arguments);
    process->waitForStarted();
    return process;
}

inline Run finish(QProcess& process, const QByteArray& input = {})
{
    constexpr int patience = 120000;
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(patience))
        return {-1, {}, process.errorString()};
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1, process.readAllStandardOutput(),
            QString::fromUtf8(process.readAllStandardError())};
}

/// Starts the tool with the words of @p command and the arguments; a server's password is in its environment.
inline std::unique_ptr<QProcess> startTool(const char* command, const QStringList& arguments = {})
{
    return start(QStringLiteral(DATAACCESS_TOOL), (*command != 0 ? words(command) : QStringList()) + arguments);
}

/// Runs it to its end.
inline Run tool(const char* command, const QStringList& arguments = {}, const QByteArray& input = {})
{
    return finish(*startTool(command, arguments), input);
}

/// The same as a process that cannot write more than @p blocks kibibytes into one file.
inline Run toolOnFullDisk(const char* command, const QStringList& arguments, int blocks)
{
    const QString script = QStringLiteral("trap '' XFSZ; ulimit -f %1; exec \"$@\"").arg(blocks);
    const QStringList shell{QStringLiteral("-c"), script, QStringLiteral("tool"), QStringLiteral(DATAACCESS_TOOL)};
    return finish(*start(QStringLiteral("bash"), shell + words(command) + arguments));
}

/// The database as it is named on the command line.
inline QString addressOf(const TestSupport::TestDatabase& database)
{
    if (database.type() != DataAccess::Enumerations::Postgres)
        return database.name();
    const auto config = database.config();
    return QStringLiteral("postgresql://%1@%2:%3/%4")
        .arg(config->UserName(), config->HostName(), QString::number(config->Port()), database.name());
}

/// A file with the network and the measurements of the quickstart, in a folder that goes with the object.
class Sample
{
public:
    Sample()
    {
        // Made once: it takes longer than most commands.
        static const QTemporaryDir folder;
        static const QString original = folder.filePath(QStringLiteral("sample.vbk"));
        static const int made = QProcess::execute(QStringLiteral(DATAACCESS_QUICKSTART), {original});
        if (made != 0 || !QFile::copy(original, path()))
            qFatal("no sample");
    }

    QString path() const { return file("sample.vbk"); }
    QString file(const char* name) const { return m_folder.filePath(QString::fromLatin1(name)); }
    QStringList files() const { return QDir(m_folder.path()).entryList(QDir::Files); }

private:
    QTemporaryDir m_folder;
};

/// Runs statements, separated by "; ", on a database or on a file of SQLite.
inline void execute(const std::shared_ptr<DataAccess::Interfaces::IConfig>& config, const char* statements)
{
    TestSupport::RunningWorker worker(config);
    worker.run([&](DataAccess::Interfaces::IDatabase& db) {
        for (const QString& statement : QString::fromUtf8(statements).split(QStringLiteral("; ")))
            db.Exec(statement);
    });
}

inline void execute(const QString& path, const char* statements,
                    DataAccess::Enumerations::DatabaseType type = DataAccess::Enumerations::SQLite3)
{
    auto config = std::make_shared<DataAccess::Database::DatabaseConfig>();
    config->SetConnectionName(QUuid::createUuid().toString());
    config->SetDatabaseName(path);
    config->SetType(type);
    execute(config, statements);
}

inline QByteArray bytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The dump of a database; fails the process when there is none.
inline QByteArray dumpOf(const QString& address)
{
    const Run run = tool("dump", {address});
    if (run.exitCode != 0)
        qFatal("no dump: %s", qPrintable(run.error));
    return run.output;
}
