#include "ToolRun.h"

#include "support/RunningWorker.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QUuid>

using namespace DataAccess;

namespace {

QStringList words(const char* text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '));
}

std::unique_ptr<QProcess> start(const QString& program, const QStringList& arguments)
{
    auto process = std::make_unique<QProcess>();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("PGPASSWORD"), TestSupport::serverConfig(QStringLiteral("postgres"))->Password());
    process->setProcessEnvironment(environment);
    process->start(program, arguments);
    process->waitForStarted();
    return process;
}

Run finish(QProcess& process, const QByteArray& input = {})
{
    constexpr int patience = 120000;
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(patience))
        return {-1, {}, process.errorString()};
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1, process.readAllStandardOutput(),
            QString::fromUtf8(process.readAllStandardError())};
}

} // namespace

QJsonObject Run::document() const
{
    return QJsonDocument::fromJson(output).object();
}

std::unique_ptr<QProcess> startTool(const char* command, const QStringList& arguments)
{
    return start(QStringLiteral(DATAACCESS_TOOL), (*command != 0 ? words(command) : QStringList()) + arguments);
}

Run tool(const char* command, const QStringList& arguments, const QByteArray& input)
{
    return finish(*startTool(command, arguments), input);
}

Run toolOnFullDisk(const char* command, const QStringList& arguments, int blocks)
{
    const QString script = QStringLiteral("trap '' XFSZ; ulimit -f %1; exec \"$@\"").arg(blocks);
    const QStringList shell{QStringLiteral("-c"), script, QStringLiteral("tool"), QStringLiteral(DATAACCESS_TOOL)};
    return finish(*start(QStringLiteral("bash"), shell + words(command) + arguments));
}

QString addressOf(const TestSupport::TestDatabase& database)
{
    if (database.type() != Enumerations::Postgres)
        return database.name();
    const auto config = database.config();
    return QStringLiteral("postgresql://%1@%2:%3/%4")
        .arg(config->UserName(), config->HostName(), QString::number(config->Port()), database.name());
}

Sample::Sample()
{
    // Made once: it takes longer than most commands.
    static const QTemporaryDir folder;
    static const QString original = folder.filePath(QStringLiteral("sample.vbk"));
    static const int made = QProcess::execute(QStringLiteral(DATAACCESS_QUICKSTART), {original});
    if (made != 0 || !QFile::copy(original, path()))
        qFatal("no sample");
}

QStringList Sample::files() const
{
    return QDir(m_folder.path()).entryList(QDir::Files);
}

void execute(const std::shared_ptr<Interfaces::IConfig>& config, const char* statements)
{
    TestSupport::RunningWorker worker(config);
    worker.run([&](Interfaces::IDatabase& db) {
        for (const QString& statement : QString::fromUtf8(statements).split(QStringLiteral("; ")))
            db.Exec(statement);
    });
}

void execute(const QString& path, const char* statements, Enumerations::DatabaseType type)
{
    auto config = std::make_shared<Database::DatabaseConfig>();
    config->SetConnectionName(QUuid::createUuid().toString());
    config->SetDatabaseName(path);
    config->SetType(type);
    execute(config, statements);
}

QByteArray bytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray dumpOf(const QString& address)
{
    const Run run = tool("dump", {address});
    if (run.exitCode != 0)
        qFatal("no dump: %s", qPrintable(run.error));
    return run.output;
}
