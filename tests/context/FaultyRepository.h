#pragma once

#include "context/ContextDatabase.h"
#include "database/Failure.h"

#include <optional>

namespace TestSupport {

/// A repository of a database that can be broken: its reads and writes fail as they are told to.
template <typename Base>
class FaultyRepository final : public Base
{
public:
    using Base::Base;
    using typename Base::Entities;
    using typename Base::EntityList;
    using Failure = DataAccess::Database::Failure;
    template <typename Result>
    using Task = DataAccess::Database::Task<Result>;

    /// How everything fails, if it does.
    std::optional<Failure::Kind> fault;

    Task<Entities>* GetAllAsync() override
    {
        if (!fault)
            return Base::GetAllAsync();
        return this->template submit<Entities>([this](DataAccess::Interfaces::IDatabase&) {
            report();
            return Entities();
        });
    }

    bool Insert(EntityList entities) override { return !isBroken() && Base::Insert(std::move(entities)); }
    bool Update(EntityList entities) override { return !isBroken() && Base::Update(std::move(entities)); }

private:
    bool isBroken() const
    {
        if (fault)
            report();
        return fault.has_value();
    }

    void report() const
    {
        DataAccess::Database::FailureWatch::report({QStringLiteral("out of order"), *fault, {}, {}});
    }
};

/// One that fails as @p fault says, on the worker of @p database.
template <typename Base>
std::shared_ptr<FaultyRepository<Base>> makeFaulty(ContextDatabase& database, DataAccess::Database::Failure::Kind fault)
{
    auto repository =
        std::make_shared<FaultyRepository<Base>>(database.worker().get(), DataAccess::Enumerations::Complete, nullptr);
    repository->fault = fault;
    return repository;
}

} // namespace TestSupport
