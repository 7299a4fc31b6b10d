#pragma once

class QIODevice;

namespace DataAccess::Database::Sqlite2 {

class FilePages;

/// The journal that a writer left behind when it died: the old content of the pages that it changed.
class HotJournal
{
public:
    /**
     * Undoes, in @p file, the half-made change that the journal at the beginning of @p journal belongs to. A journal
     * without a complete header changes nothing: its writer had not changed the file yet. Throws LegacyFileError on a
     * damaged one.
     */
    static void undo(FilePages& file, QIODevice& journal);
};

} // namespace DataAccess::Database::Sqlite2
