#pragma once

#include "database/Task.h"

#include <QHash>
#include <QUuid>

#include <memory>
#include <vector>

namespace DataAccess::Interfaces {

/**
 * The rows of one entity table. The asynchronous operations return at once; the caller owns the task they return. The
 * synchronous ones wait for it, and so must not be called on the worker's thread. Any other thread may call; entities
 * passed in belong to the operation until it has ended, since it sets their time stamp and state on the worker's
 * thread.
 *
 * Soft-deleted and snapshot rows are returned like all others. Failures are logged and answered with an empty result
 * or false; a FailureWatch of the caller, or Task::Failures(), tells such an answer from that of an empty table. A
 * repository without a worker throws std::invalid_argument, one whose worker has ended NotOpenException.
 */
template <typename T>
class DATAACCESS_EXPORT IRepository
{
public:
    /// Entities by their id.
    using Entities = QHash<QUuid, std::shared_ptr<T>>;
    /// The entities of a batch, in the order in which they are written.
    using EntityList = std::vector<std::shared_ptr<T>>;
    /// An answer that is to come.
    template <typename Result>
    using Task = ::DataAccess::Database::Task<Result>;

    virtual ~IRepository() = default;

    /// All rows, by id.
    virtual Entities GetAll() { return wait(GetAllAsync()); }
    virtual Task<Entities>* GetAllAsync() = 0;

    /// The row of @p id; null when there is none.
    virtual std::shared_ptr<T> GetById(QUuid id) { return wait(GetByIdAsync(id)); }
    virtual Task<std::shared_ptr<T>>* GetByIdAsync(QUuid id) = 0;

    /// Writes new rows in one transaction: all of them, or none and false. Null entities are skipped.
    virtual bool Insert(EntityList entities) { return wait(InsertAsync(std::move(entities))); }
    virtual Task<bool>* InsertAsync(EntityList entities) = 0;

    /// Writes existing rows in one transaction: all of them, or none and false. Null entities are skipped. Each row
    /// that is not there is reported.
    virtual bool Update(EntityList entities) { return wait(UpdateAsync(std::move(entities))); }
    virtual Task<bool>* UpdateAsync(EntityList entities) = 0;

    /// Marks rows deleted. One that cannot be, or is not there, is reported and does not stop the others, unless the
    /// database is locked or out of reach; true when the transaction was committed.
    virtual bool Delete(EntityList entities) { return wait(DeleteAsync(std::move(entities))); }
    virtual Task<bool>* DeleteAsync(EntityList entities) = 0;

    /// Deletes rows, as Delete() does.
    virtual bool Remove(EntityList entities) { return wait(RemoveAsync(std::move(entities))); }
    virtual Task<bool>* RemoveAsync(EntityList entities) = 0;

    /// The number of rows, soft-deleted ones included.
    virtual unsigned int Count() { return wait(CountAsync()); }
    virtual Task<unsigned int>* CountAsync() = 0;

protected:
    IRepository() = default;
    IRepository(const IRepository&) = default;
    IRepository& operator=(const IRepository&) = default;

    /// Waits for the result of @p task, and deletes it.
    template <typename Result>
    static Result wait(Task<Result>* task)
    {
        const std::unique_ptr<Task<Result>> owned(task);
        return owned->Result();
    }
};

} // namespace DataAccess::Interfaces
