#pragma once

#include "database/Failure.h"

#include <QSet>

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
    /// Rows that another program has removed.
    QSet<QUuid> removed;

    Task<Entities>* GetAllAsync() override
    {
        if (!fault)
            return Base::GetAllAsync();
        return this->template submit<Entities>([this](DataAccess::Interfaces::IDatabase&) {
            report(*fault, {});
            return Entities();
        });
    }

    bool Insert(EntityList entities) override { return !isBroken() && Base::Insert(std::move(entities)); }

    bool Update(EntityList entities) override
    {
        if (isBroken())
            return false;
        bool isMissing = false;
        for (const auto& entity : entities) {
            if (!removed.contains(entity->Id()))
                continue;
            isMissing = true;
            report(Failure::Kind::NoRow, entity->Id());
        }
        if (!isMissing)
            return Base::Update(std::move(entities));
        // Nothing is kept, though the objects were written.
        for (const auto& entity : entities)
            entity->SetEntityState(QOR::Entities::Enumerations::Normal);
        return false;
    }

private:
    bool isBroken() const
    {
        if (fault)
            report(*fault, {});
        return fault.has_value();
    }

    static void report(Failure::Kind kind, const QUuid& row)
    {
        DataAccess::Database::FailureWatch::report({QStringLiteral("out of order"), kind, {}, row});
    }
};

} // namespace TestSupport
