#include "database/backends/OpenFile.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>

#include <mutex>

namespace DataAccess::Database {

namespace {

/// How many connections have a file open, by its canonical path.
struct OpenFiles
{
    std::mutex mutex;
    QHash<QString, int> connections;
};

OpenFiles& openFiles()
{
    // Never destroyed: a database may still end after the static objects of the process.
    static auto* const instance = new OpenFiles;
    return *instance;
}

/// What names the file at @p info, present or to be made, however its path is spelled; empty without its folder.
QString keyOf(const QFileInfo& info)
{
    if (info.exists())
        return info.canonicalFilePath();
    const QString folder = info.absoluteDir().canonicalPath();
    return folder.isEmpty() ? QString() : folder + QLatin1Char('/') + info.fileName();
}

} // namespace

QSqlError OpenFile::refused(const char* text)
{
    return {QString(), QString::fromLatin1(text), QSqlError::ConnectionError};
}

QSqlError OpenFile::unusable(const char* text)
{
    return {QString(), QString::fromLatin1(text), QSqlError::UnknownError};
}

OpenFile::~OpenFile()
{
    leave();
}

QSqlError OpenFile::enter(const QString& path, QSqlError (*contentError)(const QString& path))
{
    leave();
    if (path.isEmpty())
        return unusable("The database file has no name");
    // The database would take the name to end there, and so another file.
    if (path.contains(QChar(QChar::Null)))
        return unusable("The name of the database file has a NUL character");
    if (path == QLatin1String(":memory:"))
        return {};
    OpenFiles& open = openFiles();
    const std::lock_guard<std::mutex> lock(open.mutex);
    const QFileInfo info(path);
    const QString key = keyOf(info);
    if (info.exists()) {
        if (info.isDir())
            return refused("The path is a folder, not a database file");
        if (!info.isFile())
            return unusable("The path is no regular file");
        if (open.connections.value(key) == 0) {
            QSqlError error = contentError(path);
            if (error.isValid())
                return error;
        }
    } else if (key.isEmpty()) {
        return refused("The folder of the database file does not exist");
    }
    m_key = key;
    ++open.connections[m_key];
    return {};
}

void OpenFile::hold(const QString& path)
{
    leave();
    OpenFiles& open = openFiles();
    const std::lock_guard<std::mutex> lock(open.mutex);
    m_key = keyOf(QFileInfo(path));
    if (!m_key.isEmpty())
        ++open.connections[m_key];
}

void OpenFile::leave()
{
    if (m_key.isEmpty())
        return;
    OpenFiles& open = openFiles();
    const std::lock_guard<std::mutex> lock(open.mutex);
    if (--open.connections[m_key] == 0)
        open.connections.remove(m_key);
    m_key.clear();
}

} // namespace DataAccess::Database
