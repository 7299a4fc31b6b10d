#include "database/LegacyCopy.h"

#include "database/FilePublication.h"
#include "database/SqliteBackup.h"
#include "database/sqlite2/LegacyFileError.h"
#include "database/sqlite2/LockedFile.h"
#include "database/sqlite2/WorkingCopy.h"

#include <QFile>

#include <optional>

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
