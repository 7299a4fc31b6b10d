#pragma once

#include "repositories/IRepository.h"

#include <QStringList>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <thread>
#include <utility>

namespace TestSupport {

/// A table in memory that keeps a record of its calls, and that fails or throws when told to. A read of all that fails
/// still gives one row, as one does that meets a value it cannot convert.
template <typename T>
class FakeRepository : public DataAccess::Interfaces::IRepository<T>
{
public:
    using Base = DataAccess::Interfaces::IRepository<T>;
    using Entities = typename Base::Entities;
    using EntityList = typename Base::EntityList;
    template <typename Result>
    using Task = DataAccess::Database::Task<Result>;

    enum Outcome { Success, Failure, Exception };

    /// What becomes of the next calls.
    void setOutcome(Outcome outcome) { m_outcome = outcome; }
    /// The names of the operations called since the last look.
    QStringList takeCalls() { return std::exchange(m_calls, {}); }
    /// The task that the last asynchronous call returned.
    void* lastTask() const { return m_lastTask; }
    /// Whether a synchronous call came while another one ran.
    bool wasEnteredTwice() const { return m_enteredTwice; }

    /// Like a database, returns new objects each time.
    Entities GetAll() override
    {
        const Call call(*this, "GetAll");
        Entities all;
        for (auto row = m_rows.constBegin(); (call.succeeds() || all.isEmpty()) && row != m_rows.constEnd(); ++row)
            all.insert(row.key(), std::make_shared<T>(**row));
        return all;
    }

    std::shared_ptr<T> GetById(QUuid id) override
    {
        const Call call(*this, "GetById");
        const auto row = m_rows.value(id);
        return call.succeeds() && row ? std::make_shared<T>(*row) : nullptr;
    }

    bool Insert(EntityList entities) override { return write("Insert", entities); }
    bool Update(EntityList entities) override { return write("Update", entities); }

    bool Delete(EntityList /*entities*/) override { return Call(*this, "Delete").succeeds(); }

    bool Remove(EntityList entities) override
    {
        const Call call(*this, "Remove");
        for (const auto& entity : entities) {
            if (call.succeeds() && entity)
                m_rows.remove(entity->Id());
        }
        return call.succeeds();
    }

    unsigned int Count() override { return Call(*this, "Count").succeeds() ? static_cast<unsigned>(m_rows.size()) : 0; }

    Task<Entities>* GetAllAsync() override { return task<Entities>("GetAllAsync"); }
    Task<std::shared_ptr<T>>* GetByIdAsync(QUuid) override { return task<std::shared_ptr<T>>("GetByIdAsync"); }
    Task<bool>* InsertAsync(EntityList) override { return task<bool>("InsertAsync"); }
    Task<bool>* UpdateAsync(EntityList) override { return task<bool>("UpdateAsync"); }
    Task<bool>* DeleteAsync(EntityList) override { return task<bool>("DeleteAsync"); }
    Task<bool>* RemoveAsync(EntityList) override { return task<bool>("RemoveAsync"); }
    Task<unsigned int>* CountAsync() override { return task<unsigned int>("CountAsync"); }

private:
    class Call
    {
    public:
        Call(FakeRepository& repository, const char* name)
            : m_repository(repository)
        {
            if (m_repository.m_entered.exchange(true))
                m_repository.m_enteredTwice = true;
            m_repository.m_calls.append(QString::fromLatin1(name));
            std::this_thread::yield(); // Who does not wait for the end of this call comes in now.
            if (m_repository.m_outcome == Exception) {
                m_repository.m_entered = false;
                throw std::runtime_error("told to");
            }
            if (!succeeds())
                DataAccess::Database::FailureWatch::report({QStringLiteral("told to"), {}, {}, {}});
        }
        ~Call() { m_repository.m_entered = false; }
        Call(const Call&) = delete;
        Call& operator=(const Call&) = delete;

        bool succeeds() const { return m_repository.m_outcome == Success; }

    private:
        FakeRepository& m_repository;
    };

    bool write(const char* name, const EntityList& entities)
    {
        const Call call(*this, name);
        for (const auto& entity : entities) {
            if (call.succeeds() && entity)
                m_rows.insert(entity->Id(), std::make_shared<T>(*entity));
        }
        return call.succeeds();
    }

    template <typename Result>
    Task<Result>* task(const char* name)
    {
        m_calls.append(QString::fromLatin1(name));
        auto* const made = new Task<Result>([](DataAccess::Interfaces::IDatabase&) { return Result(); });
        m_lastTask = made;
        return made;
    }

    Entities m_rows;
    Outcome m_outcome = Success;
    QStringList m_calls;
    void* m_lastTask = nullptr;
    std::atomic<bool> m_entered{false};
    std::atomic<bool> m_enteredTwice{false};
};

} // namespace TestSupport
