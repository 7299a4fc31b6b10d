#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

namespace DataAccess::Database::Sqlite2 {

/**
 * A legacy database file and its journal, open for reading and kept from writers: while the object lives, no program
 * that keeps to the locks of SQLite 2 changes either.
 */
class LockedFile
{
public:
    /// Waits up to five seconds for a writer to finish. Throws LegacyFileError.
    explicit LockedFile(const QString& path);

    /// At its beginning.
    QIODevice& file();
    /// At its beginning; null when there is none.
    QIODevice* journal();
    /// A text that stands for the content of the file and its journal, or the journal's absence. Throws
    /// LegacyFileError.
    QByteArray fingerprint();

private:
    void lock();

    QFile m_file;
    QFile m_journal;
};

/**
 * Lets one thread of one process at a time make a file. Held while the object lives, and let go of by the system when
 * the process dies; the file that stands for the lock may then stay behind, and does no harm.
 */
class MakingLock
{
public:
    /// @p path is that of a file for the lock alone. Waits up to a minute. Throws LegacyFileError.
    explicit MakingLock(const QString& path);
    ~MakingLock();
    MakingLock(const MakingLock&) = delete;
    MakingLock& operator=(const MakingLock&) = delete;

private:
    bool tryLock();

    QFile m_file;
};

} // namespace DataAccess::Database::Sqlite2
