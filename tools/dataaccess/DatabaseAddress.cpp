#include "DatabaseAddress.h"

#include "StoredConfigs.h"
#include "ToolError.h"
#include "database/IConfig.h"
#include "database/backends/postgres/PostgresBackend.h"
#include "database/backends/sqlite2/WorkingCopy.h"
#include "database/private/Files.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <filesystem>

using namespace DataAccess;

namespace {

bool isServerAddress(const QString& argument)
{
    return argument.startsWith(QLatin1String("postgresql://")) || argument.startsWith(QLatin1String("postgres://"));
}

DatabaseAddress fileAddress(const QString& path)
{
    if (path.isEmpty() || path == QLatin1String(":memory:"))
        throw ToolError(WrongUsage, QStringLiteral("A database needs a name"));
    DatabaseAddress address;
    address.text = path;
    address.settings.name = QFileInfo(path).absoluteFilePath();
    address.settings.type = kindOf(path) == FileKind::SQLite2 ? Enumerations::SQLite2 : Enumerations::SQLite3;
    return address;
}

DatabaseAddress serverAddress(const QString& argument)
{
    DatabaseAddress address;
    address.settings.type = Enumerations::Postgres;
    QString host;
    try {
        for (const auto& [keyword, value] : Database::parsePostgresAddress(argument)) {
            if (keyword == QLatin1String("password"))
                throw ToolError(WrongUsage, QStringLiteral("A password on the command line can be read by everybody"),
                                QStringLiteral("Put it into ~/.pgpass or a service file, into PGPASSWORD, or wait for "
                                               "the prompt."));
            if (value.contains(QLatin1Char(';')))
                throw ToolError(WrongUsage, QStringLiteral("\"%1\" cannot hold a semicolon").arg(keyword));
            if (keyword == QLatin1String("host") || keyword == QLatin1String("service"))
                host = value;
            if (keyword == QLatin1String("dbname"))
                address.settings.name = value;
            else
                address.settings.server.append({keyword, value});
        }
    } catch (const std::invalid_argument&) {
        throw ToolError(WrongUsage, QStringLiteral("This is no valid address of a PostgreSQL database"));
    }
    address.text = QStringLiteral("postgresql://%1/%2").arg(host, address.settings.name);
    return address;
}

} // namespace

bool DatabaseAddress::exists() const
{
    return isPostgres() || QFileInfo::exists(path());
}

void DatabaseAddress::requireExists() const
{
    if (!exists())
        throw ToolError(Failed, QStringLiteral("There is no file %1").arg(text));
}

DatabaseAddress DatabaseAddress::parse(const QString& argument)
{
    if (argument.startsWith(QLatin1Char('@')))
        return of(*StoredConfigs::find(argument.mid(1)));
    return isServerAddress(argument) ? serverAddress(argument) : fileAddress(argument);
}

DatabaseAddress DatabaseAddress::of(Interfaces::IConfig& config)
{
    if (config.Type() != Enumerations::Postgres)
        return fileAddress(config.DatabaseName());
    DatabaseAddress address;
    address.settings.type = Enumerations::Postgres;
    address.settings.name = config.DatabaseName();
    address.settings.password = config.Password();
    address.settings.server.append({QStringLiteral("host"), config.HostName()});
    if (config.Port() != 0)
        address.settings.server.append({QStringLiteral("port"), QString::number(config.Port())});
    if (!config.UserName().isEmpty())
        address.settings.server.append({QStringLiteral("user"), config.UserName()});
    address.text = QStringLiteral("postgresql://%1/%2").arg(config.HostName(), config.DatabaseName());
    return address;
}

FileKind kindOf(const QString& path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return FileKind::Missing;
    QFile file(path);
    // A pipe would be waited for.
    if (!info.isFile() || !file.open(QIODevice::ReadOnly))
        return FileKind::Other;
    const QByteArray start = file.read(48);
    if (start.isEmpty())
        return FileKind::Empty;
    if (start.startsWith(QByteArray("SQLite format 3", 16)))
        return FileKind::SQLite3;
    if (start.startsWith("** This file contains an SQLite 2"))
        return FileKind::SQLite2;
    return start.startsWith("PGDMP") ? FileKind::PostgresArchive : FileKind::Other;
}

bool isReplaced(const QString& input, const QString& output)
{
    if (input.isEmpty())
        return false;
    QStringList read{input, input + QStringLiteral("-journal"), input + QStringLiteral("-wal")};
    QStringList written{output, Database::unfinishedName(output)};
    if (kindOf(input) == FileKind::SQLite2) {
        read.append(Database::workingCopyOf(input));
        written.append(Database::workingCopyOf(output));
    }
    const auto isSame = [](const QString& one, const QString& other) {
        // False for a file that is not there.
        std::error_code ignored;
        return QFileInfo(one).absoluteFilePath() == QFileInfo(other).absoluteFilePath() ||
               std::filesystem::equivalent(QFile::encodeName(one).constData(), QFile::encodeName(other).constData(),
                                           ignored);
    };
    return std::any_of(read.begin(), read.end(), [&](const QString& one) {
        return std::any_of(written.begin(), written.end(), [&](const QString& other) { return isSame(one, other); });
    });
}

void refuseToReplace(const QString& input, const QString& output)
{
    if (isReplaced(input, output))
        throw ToolError(WrongUsage, QStringLiteral("%1 would be written over the database itself").arg(output));
}
