#pragma once

#include "NewFile.h"
#include "OpenedDatabase.h"

#include <optional>

/// A database that rows are written into: one that exists, or a new file, which appears when it is whole.
class TargetDatabase
{
public:
    /**
     * Brings the schema of a database without rows up to date. @p leftover says whether a new file that was not
     * completed stays, to be gone on with; @p isResumed, whether such a file is used. Throws ToolError.
     */
    TargetDatabase(const QString& argument, NewFile::Leftover leftover, bool isResumed, const Invocation& invocation);
    ~TargetDatabase();
    TargetDatabase(const TargetDatabase&) = delete;
    TargetDatabase& operator=(const TargetDatabase&) = delete;

    DataAccess::Interfaces::IDatabase& database() { return m_opened->database(); }
    const DatabaseAddress& address() const { return m_address; }
    /// Whether it had rows before.
    bool hadRows() const { return m_hadRows; }
    /// Closes the database; a new file gets its name.
    void complete();

private:
    DatabaseAddress m_address;
    std::optional<NewFile> m_file; // the lock of a file, and the new file
    std::optional<OpenedDatabase> m_opened;
    bool m_isNew = false;
    bool m_hadRows = false;
};
