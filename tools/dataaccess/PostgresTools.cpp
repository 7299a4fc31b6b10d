#include "PostgresTools.h"

#include "ToolError.h"
#include "transfer/TableRows.h"

#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>

#include <csignal>
#include <sys/prctl.h>

using namespace DataAccess;

namespace {

constexpr int s_interval = 200;
const QString s_dump = QStringLiteral("pg_dump");
const QString s_restore = QStringLiteral("pg_restore");

/// A connection that may write: what the reading was opened with must not hold for the restoring.
QString target(Transfer::ConnectionSettings settings)
{
    for (auto option = settings.server.begin(); option != settings.server.end();)
        option = option->first == QLatin1String("options") ? settings.server.erase(option) : option + 1;
    return Transfer::connectionText(settings);
}

/// A program that does not outlive this one: a restore that nobody waits for would still replace the rows.
class Helper final : public QProcess
{
protected:
    void setupChildProcess() override { ::prctl(PR_SET_PDEATHSIG, SIGTERM); }
};

} // namespace

void PostgresTools::run(const QString& program, const QStringList& arguments, const QString& password,
                        const std::function<bool()>& progress)
{
    Helper process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    if (!password.isEmpty())
        environment.insert(QStringLiteral("PGPASSWORD"), password);
    process.setProcessEnvironment(environment);
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(program, arguments);
    if (!process.waitForStarted())
        throw ToolError(Failed, QStringLiteral("%1 can't be run: %2").arg(program, process.errorString()),
                        QStringLiteral("It comes with the package postgresql-client."));
    while (!process.waitForFinished(s_interval)) {
        if (process.state() == QProcess::NotRunning)
            break;
        if (progress())
            continue;
        process.terminate();
        process.waitForFinished(-1);
        throw Transfer::Cancelled();
    }
    // The interrupt key reaches that program, too.
    if (!progress())
        throw Transfer::Cancelled();
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        const QString reason = QString::fromLocal8Bit(process.readAllStandardError()).simplified();
        throw ToolError(reason.contains(QLatin1String("lock timeout")) ? Unavailable : Failed,
                        QStringLiteral("%1 failed: %2").arg(program, reason));
    }
}

void PostgresTools::dumpTo(const QString& path, const Transfer::ConnectionSettings& settings,
                           const std::function<bool(qint64, qint64)>& progress)
{
    const auto written = [&] { return progress(QFileInfo(path).size(), 0); };
    run(s_dump,
        {QStringLiteral("--format=custom"), QStringLiteral("--no-password"), QStringLiteral("--lock-wait-timeout=10s"),
         QStringLiteral("--file=") + path, QStringLiteral("--dbname=") + target(settings)},
        settings.password, written);
    run(s_restore, {QStringLiteral("--file=/dev/null"), path}, {}, written);
}

void PostgresTools::restoreFrom(const QString& path, const Transfer::ConnectionSettings& settings,
                                const std::function<bool(qint64, qint64)>& progress)
{
    run(s_restore,
        {QStringLiteral("--single-transaction"), QStringLiteral("--exit-on-error"), QStringLiteral("--clean"),
         QStringLiteral("--if-exists"), QStringLiteral("--no-owner"), QStringLiteral("--no-privileges"),
         QStringLiteral("--no-password"), QStringLiteral("--dbname=") + target(settings), path},
        settings.password, [&] { return progress(0, 0); });
}
