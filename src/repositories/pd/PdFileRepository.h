#pragma once

#include "entities/pd/PdFile.h"
#include "repositories/EntityRepository.h"

namespace DataAccess::Repositories {

/**
 * The measurement files of reports; table `pd_file`.
 *
 * Files can be read without their content: then content and hash are empty. An update of a file that never had its
 * content from this repository, and has none, keeps the stored content, and the stored hash when it has none either.
 * To remove a content, clear it in an object that was read with it.
 */
class DATAACCESS_EXPORT PdFileRepository : public EntityRepository<PD::Entities::PdFile>
{
    Q_OBJECT

public:
    using PdFile = PD::Entities::PdFile;

    PdFileRepository(Database::DbWorker* worker, Enumerations::LoadingStrategies strategy,
                     const std::shared_ptr<Manager::AbstractRepositoryManager>& manager, QObject* parent = nullptr);
    ~PdFileRepository() override;

    using EntityRepository::GetAll;
    /// All files, with their content.
    Task<Entities>* GetAllAsync() override;

    /// All files. The caller owns the task.
    Task<Entities>* GetAllAsync(bool withoutContent);
    /// The same, waiting for the result.
    Entities GetAll(bool withoutContent);

    /// The files of all of @p reportIds; none for no ids. The caller owns the task.
    Task<Entities>* GetByReportIdAsync(const std::vector<QUuid>& reportIds, bool withoutContent);
    /// The same, waiting for the result.
    Entities GetByReportId(const std::vector<QUuid>& reportIds, bool withoutContent);

    /**
     * The file of the report that was written last, and a deleted one only when there is no other; of several written
     * at once the one whose name, then whose id, comes first. Null when there is none. The caller owns the task.
     */
    Task<std::shared_ptr<PdFile>>* GetByReportIdAsync(QUuid reportId, bool withoutContent);
    /// The same, waiting for the result.
    std::shared_ptr<PdFile> GetByReportId(QUuid reportId, bool withoutContent);

private:
    std::function<Entities(Interfaces::IDatabase&)> getRecordsByIdFunction(const std::vector<QUuid>& reportIds,
                                                                           bool withoutContent) const;
};

} // namespace DataAccess::Repositories
