#pragma once

#include <QDir>
#include <QString>

namespace DataAccess::Database {

/**
 * The path of the database file called @p name: a name is that of a file, whatever characters it has. Left relative,
 * SQLite would take "file:…" for an address with options, and Qt ":…" for a resource. The two names that SQLite gives a
 * meaning of their own, ":memory:" and the empty one, stay.
 */
inline QString filePath(const QString& name)
{
    const bool isAbsolute = !QDir::isRelativePath(name) && !name.startsWith(QLatin1Char(':'));
    if (isAbsolute || name.isEmpty() || name == QLatin1String(":memory:"))
        return name;
    return QDir::currentPath() + QLatin1Char('/') + name;
}

} // namespace DataAccess::Database
