#include "database/SQLiteFile.h"

#include <QDir>
#include <QFile>
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

/// What SQLite would not open either: no different from a connection that a server refuses.
QSqlError refused(const char* text)
{
    return {QString(), QString::fromLatin1(text), QSqlError::ConnectionError};
}

/// What SQLite would open. Trying again does not help.
QSqlError unusable(const char* text)
{
    return {QString(), QString::fromLatin1(text), QSqlError::UnknownError};
}

QSqlError contentError(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return refused("No permission to read the database file");
    // A file of no bytes is a database that nothing was written to yet.
    const QByteArray start = file.read(48);
    if (start.isEmpty() || start.startsWith(QByteArray("SQLite format 3", 16)))
        return {};
    if (start.startsWith("** This file contains an SQLite 2"))
        return unusable("The file is a database of SQLite 2, not of SQLite 3");
    return unusable("The file is no database");
}

} // namespace

SQLiteFile::~SQLiteFile()
{
    leave();
}

QSqlError SQLiteFile::enter(const QString& path)
{
    leave();
    if (path.isEmpty())
        return unusable("The database file has no name");
    // SQLite would take the name to end there, and so another file.
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

void SQLiteFile::hold(const QString& path)
{
    leave();
    OpenFiles& open = openFiles();
    const std::lock_guard<std::mutex> lock(open.mutex);
    m_key = keyOf(QFileInfo(path));
    if (!m_key.isEmpty())
        ++open.connections[m_key];
}

void SQLiteFile::leave()
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
