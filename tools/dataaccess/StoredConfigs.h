#pragma once

#include <QString>

#include <memory>

namespace DataAccess::Interfaces {
class IConfig;
}

/// The configurations in the user's settings file, by the names that the command line knows them by.
namespace StoredConfigs {

/// "default", the id with or without braces, a beginning of it, or the name of the database (of a file without its
/// folder), where only one configuration answers to it. Throws ToolError.
std::shared_ptr<DataAccess::Interfaces::IConfig> find(const QString& name);

} // namespace StoredConfigs
