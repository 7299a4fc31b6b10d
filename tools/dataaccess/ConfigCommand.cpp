#include "Invocation.h"
#include "OpenedDatabase.h"
#include "StoredConfigs.h"
#include "database/DatabaseConfig.h"

#include <QJsonArray>
#include <QUuid>

#include <algorithm>

using namespace DataAccess;
using Database::DatabaseConfig;
using Interfaces::IConfig;

namespace {

bool isDefault(const IConfig& config)
{
    return DatabaseConfig::DefaultConfig()->ConnectionName() == config.ConnectionName();
}

/// All but the password.
QJsonObject describe(IConfig& config)
{
    const char* const types[] = {"none", "SQLite 2", "SQLite 3", "PostgreSQL"};
    const int type = config.Type() >= 0 && config.Type() <= Enumerations::Postgres ? config.Type() : 0;
    QJsonObject document{{QStringLiteral("name"), config.ConnectionName()},
                         {QStringLiteral("type"), QString::fromLatin1(types[type])},
                         {QStringLiteral("database"), config.DatabaseName()},
                         {QStringLiteral("default"), isDefault(config)}};
    if (config.Type() == Enumerations::Postgres) {
        document.insert(QStringLiteral("host"), config.HostName());
        document.insert(QStringLiteral("port"), static_cast<qint64>(config.Port()));
        document.insert(QStringLiteral("user"), config.UserName());
        document.insert(QStringLiteral("password"),
                        config.Password().isEmpty() ? QStringLiteral("not stored") : QStringLiteral("stored"));
    }
    return document;
}

void print(const QJsonObject& document, const Invocation& invocation)
{
    for (auto entry = document.begin(); entry != document.end(); ++entry)
        invocation.print(QStringLiteral("%1 %2").arg(entry.key(), -9).arg(entry.value().toVariant().toString()));
}

ExitCode list(const Invocation& invocation)
{
    QJsonArray all;
    for (const auto& config : DatabaseConfig::GetConfiguartions()) {
        const QJsonObject document = describe(*config);
        all.append(document);
        invocation.print(QStringLiteral("%1 %2 %3%4")
                             .arg(config->ConnectionName(), document.value(QLatin1String("type")).toString(),
                                  DatabaseAddress::of(*config).text,
                                  isDefault(*config) ? QStringLiteral(" (default)") : QString()));
    }
    invocation.answer({{QStringLiteral("configurations"), all}});
    return Succeeded;
}

/// Whether the settings file holds @p config; a file that can't be written is only logged.
void requireStored(const IConfig& config, bool isWanted)
{
    const auto all = DatabaseConfig::GetConfiguartions();
    const bool isStored = std::any_of(all.begin(), all.end(), [&](const auto& stored) {
        return stored->ConnectionName() == config.ConnectionName();
    });
    if (isStored != isWanted)
        throw ToolError(Failed, QStringLiteral("The settings file can't be written"),
                        QStringLiteral("The option --verbose shows the log."));
}

std::shared_ptr<DatabaseConfig> configOf(const DatabaseAddress& address)
{
    auto config = std::make_shared<DatabaseConfig>();
    config->SetConnectionName(QUuid::createUuid().toString());
    config->SetDatabaseName(address.settings.name);
    config->SetType(address.settings.type);
    for (const auto& [keyword, value] : address.settings.server) {
        bool isStorable = true;
        if (keyword == QLatin1String("host"))
            config->SetHostName(value);
        else if (keyword == QLatin1String("user"))
            config->SetUserName(value);
        else if (keyword == QLatin1String("port"))
            config->SetPort(value.toUInt(&isStorable));
        else
            isStorable = false;
        if (!isStorable)
            throw ToolError(WrongUsage,
                            QStringLiteral("A configuration has no place for \"%1=%2\"").arg(keyword, value),
                            QStringLiteral("Put it into a service file or the environment."));
    }
    if (!config->IsValid())
        throw ToolError(WrongUsage, QStringLiteral("A configuration needs a host and the name of a database"));
    return config;
}

ExitCode add(const Invocation& invocation)
{
    const auto config = configOf(DatabaseAddress::parse(invocation.argument(1)));
    if (invocation.has("ask-password"))
        config->SetPassword(OpenedDatabase::askForPassword(DatabaseAddress::of(*config).text));
    if (invocation.has("default"))
        DatabaseConfig::SetDefaultConfig(config);
    else
        DatabaseConfig::AddConfig(config);
    requireStored(*config, true);
    print(describe(*config), invocation);
    invocation.answer(describe(*config));
    return Succeeded;
}

ExitCode test(IConfig& config, const Invocation& invocation)
{
    OpenedDatabase opened(DatabaseAddress::of(config), OpenedDatabase::Access::Read, invocation);
    QJsonArray schemas;
    for (const Transfer::SchemaState& schema : opened.direct().schemas()) {
        invocation.print(QStringLiteral("%1 %2").arg(schema.feature).arg(schema.found));
        schemas.append(QJsonObject{{QStringLiteral("feature"), schema.feature},
                                   {QStringLiteral("found"), static_cast<qint64>(schema.found)}});
    }
    opened.refuseNewerSchema();
    invocation.print(QStringLiteral("%1 can be opened.").arg(opened.address().text));
    invocation.answer({{QStringLiteral("database"), opened.address().text}, {QStringLiteral("schemas"), schemas}});
    return Succeeded;
}

ExitCode config(const Invocation& invocation)
{
    const QString action = invocation.argument(0);
    const bool isList = action == QLatin1String("list");
    if (isList != (invocation.arguments().size() == 1))
        throw ToolError(WrongUsage, isList ? QStringLiteral("\"config list\" takes no argument")
                                           : QStringLiteral("\"config %1\" takes an argument").arg(action));
    if (isList)
        return list(invocation);
    if (action == QLatin1String("add"))
        return add(invocation);
    if (!QStringList{QStringLiteral("show"), QStringLiteral("remove"), QStringLiteral("default"),
                     QStringLiteral("test")}
             .contains(action))
        throw ToolError(WrongUsage, QStringLiteral("\"config\" knows no \"%1\"").arg(action),
                        QStringLiteral("\"dataaccess config --help\" says what it knows."));
    QString name = invocation.argument(1);
    if (name.startsWith(QLatin1Char('@')))
        name.remove(0, 1);
    const auto stored = StoredConfigs::find(name);
    if (action == QLatin1String("test"))
        return test(*stored, invocation);
    const QJsonObject document = describe(*stored);
    if (action == QLatin1String("remove")) {
        DatabaseConfig::RemoveConfig(stored);
        requireStored(*stored, false);
        invocation.print(QStringLiteral("%1 is removed; the database itself stays.").arg(stored->ConnectionName()));
    } else if (action == QLatin1String("default")) {
        DatabaseConfig::SetDefaultConfig(stored);
        requireStored(*stored, true);
        invocation.print(QStringLiteral("%1 is the default now.").arg(stored->ConnectionName()));
    } else {
        print(document, invocation);
    }
    invocation.answer(document);
    return Succeeded;
}

} // namespace

Command configCommand()
{
    return {
        QStringLiteral("config"),
        QStringLiteral("Look after the stored configurations"),
        QStringLiteral("list | show NAME | add DB | remove NAME | default NAME | test NAME"),
        QStringLiteral("NAME is \"default\", the id, a beginning of it, or the name of the database. Passwords are\n"
                       "never shown.\n\n"
                       "Examples:\n"
                       "  dataaccess config add --default network.vbk\n"
                       "  dataaccess config add --ask-password postgresql://user@server/network\n"
                       "  dataaccess config test @network\n"),
        {{QStringLiteral("default"), QStringLiteral("With add: make it the default.")},
         {QStringLiteral("ask-password"), QStringLiteral("With add: ask for a password and store it.")}},
        1,
        2,
        &config};
}
