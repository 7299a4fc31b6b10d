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

} // namespace DataAccess::Database::Sqlite2
