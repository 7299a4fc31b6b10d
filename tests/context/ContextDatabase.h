#pragma once

#include "context/CableContext.h"
#include "context/PdContext.h"
#include "factories/EditorRepositoryManagerFactory.h"
#include "factories/PdRepositoryManagerFactory.h"
#include "repositories/PdDatabase.h"

namespace TestSupport {

/// A database of one backend with both schemas, and contexts on it.
class ContextDatabase : public PdDatabase
{
public:
    using CableContext = DataAccess::Context::CableContext;
    using PdContext = DataAccess::Context::PdContext;

    using PdDatabase::PdDatabase;

    /// A new manager of the cable network's repositories.
    std::shared_ptr<DataAccess::Manager::EditorRepositoryManager> editorManager();
    std::shared_ptr<DataAccess::Manager::PdRepositoryManager> pdManager();
    /// A new context, with nothing loaded.
    std::shared_ptr<CableContext> cableContext();
    std::shared_ptr<PdContext> pdContext();
    /// A new context, loaded.
    std::shared_ptr<CableContext> loadedCableContext();

    /// All that the tables of the cable network hold, time stamps included.
    QStringList cableRows();
    /// All that the tables of the partial-discharge results hold.
    QStringList pdRows();

private:
    /// All lines of @p tables, separated by blanks.
    QStringList rows(const char* tables);
};

/// The lines of @p after that @p before does not have.
QStringList changedRows(const QStringList& before, const QStringList& after);

} // namespace TestSupport
