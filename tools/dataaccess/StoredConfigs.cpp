#include "StoredConfigs.h"

#include "ToolError.h"
#include "database/DatabaseConfig.h"

#include <QFileInfo>

#include <vector>

using DataAccess::Database::DatabaseConfig;
using DataAccess::Interfaces::IConfig;

namespace {

bool answersTo(const IConfig& config, QString name)
{
    if (name == config.DatabaseName() || name == QFileInfo(config.DatabaseName()).fileName())
        return true;
    constexpr int leastOfAnId = 4;
    name.remove(QLatin1Char('{')).remove(QLatin1Char('}'));
    return name.size() >= leastOfAnId && config.ConnectionName().mid(1).startsWith(name, Qt::CaseInsensitive);
}

} // namespace

std::shared_ptr<IConfig> StoredConfigs::find(const QString& name)
{
    if (name == QLatin1String("default"))
        return DatabaseConfig::DefaultConfig();
    std::vector<std::shared_ptr<IConfig>> found;
    for (const auto& config : DatabaseConfig::GetConfiguartions()) {
        if (!config->ConnectionName().isEmpty() && answersTo(*config, name))
            found.push_back(config);
    }
    const QString advice = QStringLiteral("\"dataaccess config list\" shows them.");
    if (found.empty())
        throw ToolError(WrongUsage, QStringLiteral("There is no stored configuration \"%1\"").arg(name), advice);
    if (found.size() > 1)
        throw ToolError(WrongUsage, QStringLiteral("Several stored configurations answer to \"%1\"").arg(name), advice);
    return found.front();
}
