#pragma once

#include <QSettings>

#include <memory>

namespace DataAccess::Database {

/// The user's settings file. It holds passwords in plain text, so that only its user may read it.
class SettingsFile
{
public:
    /// Opens it. Null, and logged, when what is in its place is no regular file: reading from a pipe would never end.
    static std::unique_ptr<SettingsFile> open();

    QSettings& settings() { return m_settings; }

    /**
     * To be called before anything is changed; false, and logged, when nothing may be. A link is replaced by a file of
     * the same content: what it leads to is read, but belongs to somebody else, and is never written.
     */
    bool prepareChange();
    /// Writes the changes to disk. A failure is logged.
    void save();

    /// Folder of the settings file that all users of the machine share; empty when there is none.
    static QString systemFolder();

private:
    SettingsFile();

    bool replaceLink() const;
    void restrictPermissions() const;

    QSettings m_settings;
};

} // namespace DataAccess::Database
