#pragma once

#include "bench/Kinds.h"

#include <QHash>

namespace Bench {

/// One way to store the objects of a kind. An operation that fails ends the process with a message.
template <typename Object>
class Contender
{
public:
    using Objects = QHash<QUuid, std::shared_ptr<Object>>;

    Contender() = default;
    Contender(const Contender&) = delete;
    Contender& operator=(const Contender&) = delete;
    virtual ~Contender() = default;

    virtual Objects load() = 0;
    /// Writes new rows in one transaction.
    virtual void insert(const List<Object>& objects) = 0;
    /// Writes existing rows in one transaction.
    virtual void update(const List<Object>& objects) = 0;
    /// Deletes rows in one transaction.
    virtual void remove(const List<Object>& objects) = 0;
    /// Reads the rows with one statement each.
    virtual List<Object> get(const std::vector<QUuid>& ids) = 0;
    /// The same, with each row in hand before the next one is asked for.
    virtual List<Object> getEach(const std::vector<QUuid>& ids) { return get(ids); }
};

} // namespace Bench
