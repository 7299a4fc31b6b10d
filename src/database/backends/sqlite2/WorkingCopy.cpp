#include "database/backends/sqlite2/WorkingCopy.h"

#include "database/DbException.h"
#include "database/backends/SqliteBackup.h"
#include "database/backends/SqliteFamily.h"
#include "database/backends/sqlite2/CopyWriter.h"
#include "database/backends/sqlite2/LegacyFileError.h"
#include "database/backends/sqlite2/LockedFile.h"
#include "database/private/Files.h"

#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <cerrno>
#include <fcntl.h>
#include <new>
#include <optional>
#include <unistd.h>

namespace DataAccess::Database::Sqlite2 {

namespace {

/// Removes a file when it ends, if it is still there.
struct TemporaryFile
{
    ~TemporaryFile() { QFile::remove(path); }
    const QString path;
};

void open(QSqlDatabase& connection, const QString& path)
{
    connection.setDatabaseName(path);
    if (!connection.open())
        throw LegacyFileError(QStringLiteral("%1 can't be opened: %2").arg(path, connection.lastError().text()));
}

} // namespace

WorkingCopy::WorkingCopy(const QString& legacyPath)
    : m_legacyPath(filePath(legacyPath))
    , m_path(m_legacyPath + QLatin1String(".sqlite3"))
{}

void WorkingCopy::prepare()
{
    try {
        LockedFile legacy(m_legacyPath);
        const QByteArray fingerprint = legacy.fingerprint();
        requireWritable(QFileInfo(m_path).absolutePath());
        if (!QFileInfo::exists(m_path))
            make(legacy, fingerprint);
        requireWritable(m_path);
        verify(fingerprint);
    } catch (const LegacyFileError& error) {
        throw LegacyFileError(
            QStringLiteral("The SQLite 2 file %1 can't be opened: %2.").arg(m_legacyPath, error.text()));
    } catch (const std::bad_alloc&) {
        throw LegacyFileError(
            QStringLiteral("The SQLite 2 file %1 can't be opened: it is too large for the memory.").arg(m_legacyPath));
    }
}

void WorkingCopy::requireWritable(const QString& path) const
{
    if (::faccessat(AT_FDCWD, QFile::encodeName(path).constData(), W_OK, AT_EACCESS) != 0)
        throw LegacyFileError(
            QStringLiteral(
                "its changes are kept in the working copy %1, and %2 can't be written: %3. Move the file to a "
                "folder where you may write, or ask for the right to write there")
                .arg(m_path, path, qt_error_string(errno)));
}

void WorkingCopy::make(LockedFile& legacy, const QByteArray& fingerprint) const
{
    const MakingLock lock(m_path + QLatin1String(".lock"));
    if (QFileInfo::exists(m_path))
        return; // Made by another thread or program meanwhile.
    const TemporaryFile temporary{unfinishedName(m_path)};
    // Left behind by a process that was killed; nobody else has one while the lock is held.
    QFile::remove(temporary.path);
    try {
        // Users who may not read the legacy file may not read its copy.
        createFileLike(temporary.path, m_legacyPath);
        write(temporary.path, legacy, fingerprint);
        publishFile(temporary.path, m_path);
    } catch (const Exceptions::ExecutionException& error) {
        throw LegacyFileError(QString::fromLocal8Bit(error.what()));
    }
}

void WorkingCopy::write(const QString& path, LockedFile& legacy, const QByteArray& fingerprint) const
{
    PrivateConnection connection;
    LegacyFile content(FileImage(legacy.file(), legacy.journal()));
    open(connection, path);
    CopyWriter(connection).write(content, fingerprint);
    connection.close();
}

void WorkingCopy::verify(const QByteArray& fingerprint) const
{
    PrivateConnection connection;
    open(connection, m_path);
    QSqlQuery query(connection);
    query.setForwardOnly(true);
    if (!query.exec(QStringLiteral("SELECT count(*) FROM sqlite_master WHERE type='table' AND name='%1'")
                        .arg(legacyOriginTable)) ||
        !query.next())
        throw LegacyFileError(
            QStringLiteral("its working copy %1 can't be read: %2").arg(m_path, query.lastError().text()));
    if (query.value(0).toInt() == 0)
        throw LegacyFileError(
            QStringLiteral("%1 is in the place of its working copy, but is none. Move that file away").arg(m_path));
    if (!query.exec(QStringLiteral("SELECT fingerprint FROM %1").arg(legacyOriginTable)) || !query.next())
        throw LegacyFileError(
            QStringLiteral("its working copy %1 can't be read: %2").arg(m_path, query.lastError().text()));
    if (query.value(0).toByteArray() != fingerprint)
        throw LegacyFileError(
            QStringLiteral(
                "it has changed since its working copy %1 was made. To go on with the working copy, open that as "
                "a SQLite 3 database; to begin again with the file as it is now, without the changes made in "
                "the working copy, move the working copy away and open the file again")
                .arg(m_path));
}

} // namespace DataAccess::Database::Sqlite2

namespace DataAccess::Database {

using namespace Sqlite2;

namespace {

/// A file that is written under another name; removed with the object unless it was published.
class Unfinished
{
public:
    Unfinished(const QString& path, const QString& original)
        : m_path(path)
    {
        QFile::remove(name());
        createFileLike(name(), original);
    }
    ~Unfinished() { QFile::remove(name()); }
    Unfinished(const Unfinished&) = delete;
    Unfinished& operator=(const Unfinished&) = delete;

    QString name() const { return unfinishedName(m_path); }
    void publish() const { publishFile(name(), m_path); }

    void write(QIODevice& content) const
    {
        QFile file(name());
        bool isWritten = file.open(QIODevice::WriteOnly);
        constexpr qint64 part = 1 << 20;
        while (isWritten && !content.atEnd()) {
            const QByteArray bytes = content.read(part);
            isWritten = !bytes.isEmpty() && file.write(bytes) == bytes.size();
        }
        if (!isWritten || !file.flush())
            throw LegacyFileError(QStringLiteral("%1 can't be written: %2").arg(m_path, file.errorString()));
    }

private:
    QString m_path;
};

void copyAll(const QString& from, const QString& to)
{
    LockedFile legacy(from);
    const QString journal = to + QLatin1String("-journal");
    const QString copy = workingCopyOf(to);
    const Unfinished newFile(to, from);
    std::optional<Unfinished> newJournal;
    std::optional<Unfinished> newCopy;
    newFile.write(legacy.file());
    if (legacy.journal() != nullptr)
        newJournal.emplace(journal, from).write(*legacy.journal());
    if (QFile::exists(workingCopyOf(from))) {
        newCopy.emplace(copy, workingCopyOf(from));
        backupSqlite(workingCopyOf(from), newCopy->name(), true);
    }

    QFile::remove(journal);
    if (newJournal)
        newJournal->publish();
    newFile.publish();
    for (const char* suffix : {"-journal", "-wal", "-shm"})
        QFile::remove(copy + QLatin1String(suffix));
    if (newCopy)
        newCopy->publish();
    else
        QFile::remove(copy);
}

} // namespace

QString workingCopyOf(const QString& path)
{
    return WorkingCopy(path).path();
}

void copyLegacyFile(const QString& from, const QString& to)
{
    try {
        copyAll(from, to);
    } catch (const LegacyFileError& error) {
        throw LegacyFileError(QStringLiteral("The SQLite 2 file %1 can't be copied: %2").arg(from, error.text()));
    }
}

} // namespace DataAccess::Database
