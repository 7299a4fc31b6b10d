#pragma once

#include "context/AbstractContext.h"
#include "entities/cables/Rating.h"
#include "entities/pd/PdFile.h"
#include "entities/pd/PdIecOverview.h"
#include "entities/pd/PdLbDiagram.h"
#include "entities/pd/PdMappingEvent.h"
#include "entities/pd/PdReport.h"
#include "entities/pd/PdSummary.h"
#include "entities/pd/PdTask.h"
#include "entities/pd/PdTaskInfo.h"

#include <vector>

namespace DataAccess::Interfaces {
class IPdRepositoryManager;
}

namespace DataAccess::Repositories {
class PdFileRepository;
}

namespace DataAccess::Context {

class CableContext;

/**
 * The partial-discharge tests of one database, with their reports and results linked to one another. The files of
 * reports are loaded on request only, and stay until the next reload(). See CableContext for the accessors and for
 * marks.
 */
class DATAACCESS_EXPORT PdContext : public AbstractContext, public std::enable_shared_from_this<PdContext>
{
    Q_OBJECT

public:
    template <typename T>
    using EntitiesOf = QHash<QUuid, std::shared_ptr<T>>;

    /// Loads nothing. @p manager may be null; otherwise it has to be an AbstractRepositoryManager too.
    PdContext(Enumerations::LoadingStrategies strategy,
              const std::shared_ptr<Interfaces::IPdRepositoryManager>& manager, unsigned int value,
              QObject* parent = nullptr);
    ~PdContext() override;

    void reload() override;
    void saveChanges() override;

    /// Loads the files of @p reportIds, with their content, as new objects. Files with changes that were not saved, and
    /// detached ones, stay as they are; so do all those of a report whose files cannot be read.
    void loadFiles(const std::vector<QUuid>& reportIds);
    /// Loads the files of all reports that are loaded.
    void loadFiles();

    /// Tasks are linked to the cables and stations of @p context, held weakly, as often as either context is loaded;
    /// the two take turns. A task whose cable or station @p context does not have keeps the id alone. To be called
    /// once, before this context is used on several threads.
    void SetCableContext(const std::shared_ptr<CableContext>& context);

    EntitiesOf<PD::Entities::PdTask> Tasks() const;
    EntitiesOf<PD::Entities::PdTaskInfo> TaskInfos() const;
    EntitiesOf<PD::Entities::PdReport> Reports() const;
    EntitiesOf<PD::Entities::PdFile> Files() const;
    EntitiesOf<PD::Entities::PdIecOverview> IecOverviews() const;
    EntitiesOf<PD::Entities::PdMappingEvent> MappingEvents() const;
    EntitiesOf<PD::Entities::PdSummary> Summaries() const;
    EntitiesOf<Cables::Entities::Rating> Ratings() const;
    EntitiesOf<PD::Entities::PdLbDiagram> LbDiagrams() const;

private:
    struct Data;

    /// Reads all kinds but files. Gives the reason when something cannot be read.
    QString load();
    void loadFilesOf(const QUuid& reportId, Repositories::PdFileRepository& repository);
    /// Links what is here to one another, and to the cable context.
    void concat();
    void linkToCables();
    template <typename T>
    EntitiesOf<T> all() const;

    std::unique_ptr<Data> m_data;
};

} // namespace DataAccess::Context
