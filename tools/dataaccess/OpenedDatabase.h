#pragma once

#include "DatabaseAddress.h"
#include "transfer/private/DirectDatabase.h"

#include <QTemporaryDir>

#include <memory>

class Invocation;

/**
 * The database of an address, open. To be read, it is opened without the right to write, and a legacy file, which the
 * library would put a working copy beside, is copied into a temporary folder first.
 */
class OpenedDatabase
{
public:
    enum class Access { Read, Write };

    /// Asks for a password when the server wants one and there is a terminal. Throws ToolError.
    OpenedDatabase(const DatabaseAddress& address, Access access, const Invocation& invocation);

    DataAccess::Transfer::DirectDatabase& direct() { return *m_direct; }
    DataAccess::Interfaces::IDatabase& database() { return m_direct->database(); }
    const DatabaseAddress& address() const { return m_address; }

    /**
     * Throws ToolError unless all schemas are those of this program. What lies in a temporary folder is brought up to
     * date instead.
     */
    void requireCurrentSchema();
    /// Throws ToolError when a schema is newer than this program.
    void refuseNewerSchema() const;

    /// What the user types at the terminal, unseen. Throws ToolError when there is none.
    static QString askForPassword(const QString& database);

private:
    void openWithRetries(const Invocation& invocation);

    DatabaseAddress m_address;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<DataAccess::Transfer::DirectDatabase> m_direct;
};
