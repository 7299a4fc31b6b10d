#include "PostgresTools.h"

#include "OpenedDatabase.h"
#include "ToolError.h"
#include "transfer/Progress.h"
#include "transfer/private/TableRows.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>

#include <csignal>
#include <sys/prctl.h>

using namespace DataAccess;

namespace {

constexpr int s_interval = 200;
constexpr int s_lockTimeout = 10000;
const QString s_dump = QStringLiteral("pg_dump");
const QString s_restore = QStringLiteral("pg_restore");

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
        // What else the server says, in lines of its own, has the values of rows.
        const QString reason = QString::fromLocal8Bit(process.readAllStandardError())
                                   .split(QLatin1Char('\n'))
                                   .filter(program + QLatin1Char(':'))
                                   .join(QLatin1Char(' '));
        // pg_dump waits for locks only, and under the time-out of a statement.
        const bool isLocked = reason.contains(QLatin1String("statement timeout"));
        throw ToolError(isLocked ? Unavailable : Failed, QStringLiteral("%1 failed: %2").arg(program, reason),
                        isLocked ? QStringLiteral("Another program has locked a table; try again later.") : QString());
    }
}

void PostgresTools::dumpTo(const QString& path, const Transfer::ConnectionSettings& settings,
                           const std::function<bool(qint64, qint64)>& progress)
{
    const auto written = [&] { return progress(QFileInfo(path).size(), 0); };
    run(s_dump,
        {QStringLiteral("--format=custom"), QStringLiteral("--no-password"), QStringLiteral("--lock-wait-timeout=10s"),
         QStringLiteral("--file=") + path, QStringLiteral("--dbname=") + Transfer::connectionText(settings)},
        settings.password, written);
    run(s_restore, {QStringLiteral("--file=/dev/null"), path}, {}, written);
}

void PostgresTools::restoreFrom(const QString& path, OpenedDatabase& target,
                                const std::function<bool(qint64, qint64)>& progress)
{
    Transfer::ConnectionSettings settings = target.address().settings;
    const QString name = QStringLiteral("dataaccess restore %1").arg(QCoreApplication::applicationPid());
    settings.server.append({QStringLiteral("application_name"), name});
    const QString select = QStringLiteral("SELECT %1 FROM pg_stat_activity WHERE application_name = '%2'");
    QElapsedTimer waiting;
    // The time-out of the connection does not help: the first that the program does is to switch that off.
    const auto isWanted = [&] {
        if (!Transfer::scalar(target.database(), select.arg(QStringLiteral("bool_or(wait_event_type = 'Lock')"), name))
                 .toBool()) {
            waiting.invalidate();
        } else if (!waiting.isValid()) {
            waiting.start();
        } else if (waiting.hasExpired(s_lockTimeout)) {
            // Those who come later wait behind it.
            Transfer::scalar(target.database(), select.arg(QStringLiteral("pg_terminate_backend(pid)"), name));
            throw ToolError(Unavailable, QStringLiteral("%1 is locked by another program").arg(target.address().text),
                            QStringLiteral("Nothing was changed; try again later."));
        }
        return progress(0, 0);
    };
    run(s_restore,
        {QStringLiteral("--single-transaction"), QStringLiteral("--exit-on-error"), QStringLiteral("--clean"),
         QStringLiteral("--if-exists"), QStringLiteral("--no-owner"), QStringLiteral("--no-privileges"),
         QStringLiteral("--no-password"), QStringLiteral("--dbname=") + Transfer::connectionText(settings), path},
        settings.password, isWanted);
}
