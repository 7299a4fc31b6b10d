#pragma once

#include "database/DataAccessExport.h"
#include "database/LoadingStrategies.h"
#include "entities/qor/Entity.h"

#include <QObject>
#include <QUuid>

#include <memory>
#include <mutex>

namespace DataAccess::Manager {
class AbstractRepositoryManager;
}

namespace DataAccess::Context {

class EntityLedger;
class SaveRun;

/**
 * A working set of one family of data: loaded whole, edited by the application, and written back in one call.
 *
 * Loading, saving and importing take turns: called from two threads, one waits until the other has ended. They block
 * their caller while the work runs on the database's thread, and so must not be called on that one. Signals are emitted
 * on the caller's thread; a receiver on another thread gets them through its event loop. The entities themselves are
 * not guarded: nobody may use them while they are loaded or saved.
 *
 * Nothing here throws when the database fails: the failure is logged (category "qor.context") and signalled.
 */
class DATAACCESS_EXPORT AbstractContext : public QObject
{
    Q_OBJECT

public:
    using EntityPointer = std::shared_ptr<QOR::Entities::Entity>;

    /// Shares the ownership of @p manager. @p value is kept and not used.
    AbstractContext(const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                    Enumerations::LoadingStrategies strategy, unsigned int value, QObject* parent = nullptr);
    ~AbstractContext() override;
    AbstractContext(const AbstractContext&) = delete;
    AbstractContext& operator=(const AbstractContext&) = delete;

    // Applications rely on the order of these.
    /// Puts @p entity, which may be null, under the care of the context: it is saved with the rest. Of two entities
    /// with one id the first one stays, and a warning says so.
    virtual void attach(std::shared_ptr<QOR::Entities::Entity> entity);
    /// Removes what is attached under the id of @p entity: its changes are not saved any more.
    virtual void detach(std::shared_ptr<QOR::Entities::Entity> entity);
    /// Loads everything anew, and drops what was loaded before, with the changes that were not saved. When something
    /// cannot be read the context is empty and not loaded.
    virtual void reload() = 0;
    /// Writes what was attached, changed or marked deleted since it was loaded or saved. What cannot be written keeps
    /// its state, and is written by the next call. Ends with the first kind that finds the database out of reach.
    virtual void saveChanges() = 0;

    /// The number of attached entities.
    unsigned int count() const;
    /// Whether a load is under way.
    bool isLoading() const;
    /// Whether the last load has read everything.
    bool isLoaded() const;
    Enumerations::LoadingStrategies loadingStrategy() const;

Q_SIGNALS:
    void loadingChanged(bool isLoading);
    void loadingCompleted();
    void savingCompleted();
    /// How many of the kinds that are being loaded have arrived; between loadingChanged(true) and
    /// loadingChanged(false).
    void loadingProgress(int done, int total);
    /// A load could not read everything. Comes before loadingChanged(false); the reason names the kind and gives the
    /// database's words.
    void loadingFailed(const QString& reason);
    /// Something could not be written. Comes before savingCompleted(); the reason names the kinds and gives the
    /// database's words.
    void savingFailed(const QString& reason);

protected:
    /// The same, for a context that knows the kinds of its entities.
    AbstractContext(const std::shared_ptr<Manager::AbstractRepositoryManager>& manager,
                    Enumerations::LoadingStrategies strategy, unsigned int value, QObject* parent,
                    std::shared_ptr<EntityLedger> ledger);

    using Turn = std::unique_lock<std::recursive_mutex>;

    /// Waits until no other thread loads or saves. Throws std::system_error when that cannot be.
    Turn takeTurn() const;
    /// Makes this context take turns with @p other too. To be called before it is used on several threads.
    void shareTurns(const AbstractContext& other);
    void setIsLoading(bool isLoading);
    const std::shared_ptr<Manager::AbstractRepositoryManager>& manager() const;
    unsigned int value() const;

    const std::shared_ptr<EntityLedger>& ledger() const;
    /// Whether the last reload() could not read everything.
    bool hasLoadFailed() const;
    /// Ends a load, which failed for @p reason unless that is empty.
    void finishLoading(const QString& reason);
    /// Ends a save: makes Normal what is stored, and tells the application.
    void finishSaving(SaveRun& run);

private:
    struct Data;

    std::unique_ptr<Data> m_data;
};

} // namespace DataAccess::Context
