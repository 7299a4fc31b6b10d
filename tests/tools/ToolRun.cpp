#include "ToolRun.h"

#include "support/RunningWorker.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QUuid>

using namespace DataAccess;

namespace {

constexpr int s_patience = 120000;

QProcessEnvironment environment()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("PGPASSWORD"), TestSupport::serverConfig(QStringLiteral("postgres"))->Password());
    return environment;
}

Run finish(QProcess& process, const QByteArray& input = {})
{
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(s_patience))
        return {-1, {}, process.errorString()};
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1, process.readAllStandardOutput(),
            QString::fromUtf8(process.readAllStandardError())};
}

} // namespace

QJsonObject Run::document() const
{
    return QJsonDocument::fromJson(output).object();
}

Run tool(const QStringList& arguments, const QByteArray& input)
{
    return finish(*startTool(arguments), input);
}

std::unique_ptr<QProcess> startTool(const QStringList& arguments)
{
    auto process = std::make_unique<QProcess>();
    process->setProcessEnvironment(environment());
    process->start(QStringLiteral(DATAACCESS_TOOL), arguments);
    process->waitForStarted();
    return process;
}

Run toolOnFullDisk(const QStringList& arguments, int blocks)
{
    QProcess process;
    process.setProcessEnvironment(environment());
    const QString script = QStringLiteral("trap '' XFSZ; ulimit -f %1; exec \"$@\"").arg(blocks);
    process.start(QStringLiteral("bash"),
                  QStringList{QStringLiteral("-c"), script, QStringLiteral("tool"), QStringLiteral(DATAACCESS_TOOL)} +
                      arguments);
    return finish(process);
}

QString addressOf(const TestSupport::TestDatabase& database)
{
    if (database.type() != Enumerations::Postgres)
        return database.name();
    const auto config = database.config();
    return QStringLiteral("postgresql://%1@%2:%3/%4")
        .arg(config->UserName(), config->HostName())
        .arg(config->Port())
        .arg(database.name());
}

Sample::Sample()
{
    // Made once: it takes longer than most commands.
    static const QTemporaryDir folder;
    static const QString original = [] {
        QString path = folder.filePath(QStringLiteral("sample.vbk"));
        if (QProcess::execute(QStringLiteral(DATAACCESS_QUICKSTART), {path}) != 0)
            qFatal("the quickstart failed");
        return path;
    }();
    if (!QFile::copy(original, path()))
        qFatal("the sample can't be copied");
}

QStringList Sample::files() const
{
    return QDir(m_folder.path()).entryList(QDir::Files);
}

void execute(const std::shared_ptr<Interfaces::IConfig>& config, const QStringList& statements)
{
    TestSupport::RunningWorker worker(config);
    worker.run([&](Interfaces::IDatabase& db) {
        for (const QString& statement : statements)
            db.Exec(statement);
    });
}

void execute(const QString& path, const QStringList& statements)
{
    auto config = std::make_shared<Database::DatabaseConfig>();
    config->SetConnectionName(QUuid::createUuid().toString());
    config->SetDatabaseName(path);
    config->SetType(Enumerations::SQLite3);
    execute(config, statements);
}

QByteArray bytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray dumpOf(const QString& address)
{
    const Run run = tool({QStringLiteral("dump"), address});
    if (run.exitCode != 0)
        qFatal("no dump: %s", qPrintable(run.error));
    return run.output;
}
