#pragma once

#include "database/DbWorker.h"

#include <QString>
#include <QThread>

#include <memory>

/**
 * A SQLite file that is open and has the current schema: its worker runs on a thread of its own until the object ends.
 * Throws std::runtime_error with one line that says what is wrong when the file cannot be opened or brought up to date.
 */
class OpenDatabase
{
public:
    explicit OpenDatabase(const QString& path);
    ~OpenDatabase();
    OpenDatabase(const OpenDatabase&) = delete;
    OpenDatabase& operator=(const OpenDatabase&) = delete;

    DataAccess::Database::DbWorker* worker() const { return m_worker.get(); }
    /// The schema version of the cable network that the file had before it was opened, 0 for a new one, and the one it
    /// has now.
    unsigned int versionBefore() const { return m_versionBefore; }
    unsigned int version() const { return m_version; }

private:
    void stop();
    void migrate();
    QString openError() const;

    QThread m_thread;
    std::unique_ptr<DataAccess::Database::DbWorker> m_worker;
    unsigned int m_versionBefore = 0;
    unsigned int m_version = 0;
};
