#include "OpenedDatabase.h"

#include "Invocation.h"
#include "ToolError.h"
#include "database/DbException.h"
#include "database/backends/sqlite2/WorkingCopy.h"

#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <termios.h>
#include <unistd.h>

using namespace DataAccess;

namespace {

bool lacksPassword(const Exceptions::DbException& error)
{
    return QByteArray(error.what()).contains("no password supplied");
}

} // namespace

QString OpenedDatabase::askForPassword(const QString& database)
{
    if (isatty(STDIN_FILENO) == 0)
        throw ToolError(WrongUsage, QStringLiteral("There is no terminal to ask for the password at"));
    std::fprintf(stderr, "Password for %s: ", qPrintable(database));
    termios before = {};
    tcgetattr(STDIN_FILENO, &before);
    termios silent = before;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
    QFile terminal;
    const QByteArray line = terminal.open(stdin, QIODevice::ReadOnly) ? terminal.readLine() : QByteArray();
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &before);
    std::fputc('\n', stderr);
    return QString::fromLocal8Bit(line.endsWith('\n') ? line.chopped(1) : line);
}

OpenedDatabase::OpenedDatabase(const DatabaseAddress& address, Access access, const Invocation& invocation)
    : m_address(address)
{
    Transfer::ConnectionSettings& settings = m_address.settings;
    settings.isReadOnly = access == Access::Read;
    if (access == Access::Read)
        address.requireExists();
    if (address.isLegacy() && access == Access::Read) {
        invocation.note(QStringLiteral("%1 is a legacy file: a temporary copy of it is read.").arg(address.text));
        m_folder = std::make_unique<QTemporaryDir>();
        settings.name = m_folder->filePath(QStringLiteral("legacy.db"));
        Database::copyLegacyFile(address.settings.name, settings.name);
    }
    try {
        openWithRetries(invocation);
    } catch (const Exceptions::DbException& error) {
        QString reason = QString::fromLocal8Bit(error.what()).simplified();
        // The name of a temporary copy tells nobody anything.
        reason.remove(QStringLiteral("The SQLite 2 file %1 can't be opened: ").arg(settings.name));
        reason.replace(settings.name, address.settings.name);
        throw ToolError(error.isUnavailable() ? Unavailable : Failed,
                        QStringLiteral("%1 can't be opened: %2").arg(address.text, reason),
                        error.isUnavailable() ? QStringLiteral("Try again when it can be reached.") : QString());
    }
}

void OpenedDatabase::openWithRetries(const Invocation& invocation)
{
    Transfer::ConnectionSettings& settings = m_address.settings;
    try {
        m_direct = std::make_unique<Transfer::DirectDatabase>(settings);
    } catch (const Exceptions::DbException& error) {
        const bool wantsPassword = lacksPassword(error) && isatty(STDIN_FILENO) != 0;
        // A program died while it was writing: nobody can read before what it wrote is undone, as SQLite does then.
        const bool wantsUndoing = settings.type == Enumerations::SQLite3 && settings.isReadOnly &&
                                  !error.isUnavailable() &&
                                  QFileInfo(settings.name + QStringLiteral("-journal")).size() > 0;
        if (wantsPassword)
            settings.password = askForPassword(m_address.text);
        else if (wantsUndoing)
            settings.isReadOnly = false;
        else
            throw;
        m_direct = std::make_unique<Transfer::DirectDatabase>(settings);
        if (wantsUndoing)
            invocation.note(
                QStringLiteral("A change of %1 that a program has not ended was undone.").arg(m_address.text));
    }
}

void OpenedDatabase::refuseNewerSchema() const
{
    for (const Transfer::SchemaState& schema : m_direct->schemas()) {
        if (schema.found > schema.expected)
            throw ToolError(NewerSchema,
                            QStringLiteral("%1 is newer than this program: %2 is %3, not %4")
                                .arg(m_address.text, schema.feature)
                                .arg(schema.found)
                                .arg(schema.expected),
                            QStringLiteral("Use a newer version of this program."));
    }
}

void OpenedDatabase::requireCurrentSchema()
{
    refuseNewerSchema();
    bool isCurrent = true;
    for (const Transfer::SchemaState& schema : m_direct->schemas())
        isCurrent = isCurrent && schema.found == schema.expected;
    if (isCurrent || (m_folder && m_direct->migrate()))
        return;
    if (m_folder)
        throw ToolError(Failed, QStringLiteral("The content of %1 can't be brought up to date").arg(m_address.text),
                        QStringLiteral("The option --verbose shows the log."));
    throw ToolError(MigrationNeeded, QStringLiteral("The schema of %1 is older than this program").arg(m_address.text),
                    QStringLiteral("Run \"dataaccess migrate\" first."));
}
