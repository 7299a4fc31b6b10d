#pragma once

#include "context/CableContext.h"
#include "context/PdContext.h"
#include "database/IConfig.h"
#include "manager/IRepositoryManager.h"

#include <QString>

#include <memory>

/**
 * A SQLite file, or a legacy SQLite 2 file, that is open, has the current schema, and is loaded; closed with the
 * object. Throws std::runtime_error with one line that says what is wrong when that cannot be.
 */
class OpenDatabase
{
public:
    explicit OpenDatabase(const QString& path);
    ~OpenDatabase();
    OpenDatabase(const OpenDatabase&) = delete;
    OpenDatabase& operator=(const OpenDatabase&) = delete;

    DataAccess::Context::CableContext& network() const { return *m_manager->CableContext(); }
    DataAccess::Context::PdContext& measurements() const { return *m_manager->PdContext(); }
    /// Where changes of a legacy file go, which itself stays as it is; empty for all other files.
    const QString& workingCopy() const { return m_workingCopy; }

    /// Saves both contexts.
    void save() const;

private:
    std::shared_ptr<DataAccess::Interfaces::IConfig> m_config;
    std::shared_ptr<DataAccess::Interfaces::IRepositoryManager> m_manager;
    QString m_workingCopy;
};
