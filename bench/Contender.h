#pragma once

#include "bench/Kinds.h"

#include <QHash>

namespace Bench {

/// One way to store the entities of a kind. An operation that fails ends the process with a message.
template <typename Kind>
class Contender
{
public:
    using Entity = typename Kind::Entity;
    using Entities = QHash<QUuid, std::shared_ptr<Entity>>;
    using List = EntityList<Kind>;

    Contender() = default;
    Contender(const Contender&) = delete;
    Contender& operator=(const Contender&) = delete;
    virtual ~Contender() = default;

    virtual Entities load() = 0;
    /// Writes new rows in one transaction.
    virtual void insert(const List& entities) = 0;
    /// Writes existing rows in one transaction.
    virtual void update(const List& entities) = 0;
    /// Reads the rows with one statement each, on a thread of the database's where the way to store has one.
    virtual List get(const std::vector<QUuid>& ids) = 0;
    /// Marks rows deleted in one transaction.
    virtual void softDelete(const List& entities) = 0;
    /// Deletes rows in one transaction.
    virtual void remove(const List& entities) = 0;
    virtual unsigned int count() = 0;
};

} // namespace Bench
