#pragma once

#include <QHash>
#include <QUuid>

#include <memory>
#include <tuple>
#include <type_traits>

namespace DataAccess::Context {

/// The entities of one kind, by id.
template <typename T>
using EntitiesById = QHash<QUuid, std::shared_ptr<T>>;

/// How messages call the kind.
template <typename T>
inline constexpr const char* kindName = "";

/// The type of the entities in an EntitiesById.
template <typename Entities>
using EntityOf = typename std::decay_t<Entities>::mapped_type::element_type;

/// The entities of several kinds: @p Tuple has one EntitiesById of each.
template <typename Tuple>
class EntityHashes
{
public:
    template <typename T>
    EntitiesById<T>& of()
    {
        return std::get<EntitiesById<T>>(m_kinds);
    }
    template <typename T>
    const EntitiesById<T>& of() const
    {
        return std::get<EntitiesById<T>>(m_kinds);
    }
    /// The entity of @p id; null when it is not here.
    template <typename T>
    std::shared_ptr<T> find(const QUuid& id) const
    {
        return of<T>().value(id);
    }

    /// Calls @p visitor with the entities of each kind.
    template <typename Visitor>
    void visit(const Visitor& visitor)
    {
        std::apply([&visitor](auto&... entities) { (visitor(entities), ...); }, m_kinds);
    }

    template <typename Visitor>
    void visit(const Visitor& visitor) const
    {
        std::apply([&visitor](const auto&... entities) { (visitor(entities), ...); }, m_kinds);
    }

private:
    Tuple m_kinds;
};

} // namespace DataAccess::Context
