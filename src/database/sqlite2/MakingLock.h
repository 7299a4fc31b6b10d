#pragma once

#include <QFile>
#include <QString>

namespace DataAccess::Database::Sqlite2 {

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
