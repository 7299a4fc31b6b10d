#pragma once

#include "factories/IFactory.h"
#include "manager/EditorRepositoryManager.h"

#include <QObject>

namespace DataAccess::Factories {

/// Makes managers with the repositories of the cable network. They are children of the factory's parent, which does not
/// own them.
class DATAACCESS_EXPORT EditorRepositoryManagerFactory : public QObject,
                                                         public Interfaces::IFactory<Manager::EditorRepositoryManager>
{
    Q_OBJECT

public:
    /// Owned by @p parent, if any.
    explicit EditorRepositoryManagerFactory(QObject* parent = nullptr);
    ~EditorRepositoryManagerFactory() override;
    EditorRepositoryManagerFactory(const EditorRepositoryManagerFactory&) = delete;
    EditorRepositoryManagerFactory& operator=(const EditorRepositoryManagerFactory&) = delete;

    std::shared_ptr<Manager::EditorRepositoryManager> create(Database::DbWorker* worker,
                                                             Enumerations::LoadingStrategies strategy) override;
};

} // namespace DataAccess::Factories
