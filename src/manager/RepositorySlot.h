#pragma once

#include <memory>

namespace DataAccess::Manager {

/// A repository as a manager keeps it: plain, and behind a view of the kind @p Cache. Empty at first.
template <typename Plain, typename Cache>
class RepositorySlot
{
public:
    const std::shared_ptr<Plain>& plain() const { return m_plain; }
    const std::shared_ptr<Cache>& cached() const { return m_cached; }

    /// Takes @p repository with a new view over it. False, and the view stays, when it is the one already here.
    bool set(const std::shared_ptr<Plain>& repository)
    {
        if (repository == m_plain)
            return false;
        m_cached = std::make_shared<Cache>(repository);
        m_plain = repository;
        return true;
    }

private:
    std::shared_ptr<Plain> m_plain;
    std::shared_ptr<Cache> m_cached;
};

} // namespace DataAccess::Manager
