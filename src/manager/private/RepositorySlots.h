#pragma once

#include "manager/private/Kinds.h"

namespace DataAccess::Manager {

/// A repository as a manager keeps it: plain, and behind a view of the kind @p View. Empty at first.
template <typename Plain, typename View>
class RepositorySlot
{
public:
    const std::shared_ptr<Plain>& plain() const { return m_plain; }
    const std::shared_ptr<View>& cached() const { return m_cached; }

    /// Keeps @p repository with a new view over it. False, and the view stays, when it is the one already here.
    bool set(const std::shared_ptr<Plain>& repository)
    {
        if (repository == m_plain)
            return false;
        m_cached = std::make_shared<View>(repository);
        m_plain = repository;
        return true;
    }

private:
    std::shared_ptr<Plain> m_plain;
    std::shared_ptr<View> m_cached;
};

/// A repository that is handed out plain only.
template <typename Plain>
class RepositorySlot<Plain, NoView>
{
public:
    const std::shared_ptr<Plain>& plain() const { return m_plain; }

    /// Keeps @p repository; false, since no view is made.
    bool set(const std::shared_ptr<Plain>& repository)
    {
        m_plain = repository;
        return false;
    }

private:
    std::shared_ptr<Plain> m_plain;
};

/// The repositories of a family: a slot for each kind that the tuple @p Kinds lists.
template <typename Kinds>
class RepositorySlots;

template <typename... Kind>
class RepositorySlots<std::tuple<Kind...>>
{
public:
    /// The slot of the entities of type @p T; does not compile when no kind of the list has them.
    template <typename T>
    auto& of()
    {
        return std::get<indexOfKind<T, Kind...>>(m_slots);
    }

private:
    std::tuple<RepositorySlot<typename Kind::Plain, typename Kind::View>...> m_slots;
};

} // namespace DataAccess::Manager
