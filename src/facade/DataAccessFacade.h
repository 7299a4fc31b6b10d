#pragma once

#include "facade/IDataAccessFacade.h"

#include <QObject>

namespace DataAccess {

namespace Interfaces {
class IMigrationManager;
}

class RunningDatabase;

/**
 * See IDataAccessFacade. Signals are emitted by AddDatabase(), on its caller's thread. Databases that are open when the
 * application object ends, or the process exits, are closed then, once the jobs that wait have run.
 */
class DATAACCESS_EXPORT DataAccessFacade : public QObject, public Interfaces::IDataAccessFacade
{
    Q_OBJECT

public:
    /// The one facade, made by the first call.
    static std::shared_ptr<DataAccessFacade> Instance();
    ~DataAccessFacade() override;
    DataAccessFacade(const DataAccessFacade&) = delete;
    DataAccessFacade& operator=(const DataAccessFacade&) = delete;

    /// See IDataAccessFacade.
    std::shared_ptr<Interfaces::IRepositoryManager> AddDatabase(std::shared_ptr<Interfaces::IConfig> config) override;
    std::shared_ptr<Interfaces::IRepositoryManager>
    GetRepositories(std::shared_ptr<Interfaces::IConfig> config) override;
    void RemoveDatabase(std::shared_ptr<Interfaces::IConfig> config) override;
    QHash<QString, QString> GetVersions() override;
    QStringList GetMigrationMessages() override;
    QString LastError(std::shared_ptr<Interfaces::IConfig> config) const override;

Q_SIGNALS:
    /// The schema version of a database cannot be read; it is not opened.
    void unknownDB(QString message);
    /// A schema of a database is newer than this build. It is opened all the same, and nothing is written there
    /// unasked.
    void migrationError(QString message);

private:
    struct Data;
    struct Opening;

    explicit DataAccessFacade(QObject* parent);

    std::shared_ptr<Interfaces::IRepositoryManager> refuse(const std::shared_ptr<Interfaces::IConfig>& config,
                                                           const QString& reason);
    void checkSchemas(RunningDatabase& database, Opening& opening);
    void checkSchema(Interfaces::IMigrationManager& migration, Opening& opening);
    std::shared_ptr<Interfaces::IRepositoryManager>
    makeRepositories(RunningDatabase& database, Interfaces::IConfig& config, const QStringList& newerFeatures);
    void closeAll();
    void closeAllAtEnd(Interfaces::IConfig& config);

    std::unique_ptr<Data> m_data;
};

} // namespace DataAccess
