#pragma once

#include <QSettings>

namespace DataAccess::Database {

/// The user's settings file. It holds passwords in plain text, so that only its user may read it.
class SettingsFile
{
public:
    SettingsFile();

    QSettings& settings() { return m_settings; }

    /// Writes the changes to disk. A failure is logged.
    void save();

    /// Folder of the settings file that all users of the machine share; empty when there is none.
    static QString systemFolder();

private:
    void restrictPermissions() const;

    QSettings m_settings;
};

} // namespace DataAccess::Database
