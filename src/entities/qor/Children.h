#pragma once

#include <QScopeGuard>

#include <algorithm>
#include <memory>
#include <unordered_set>
#include <utility>
#include <vector>

namespace QOR::Entities {

/// Gives the list without null and repeated entries, in the same order.
template <typename T>
std::vector<std::shared_ptr<T>> distinctChildren(const std::vector<std::shared_ptr<T>>& list)
{
    std::vector<std::shared_ptr<T>> distinct;
    distinct.reserve(list.size());
    std::unordered_set<const T*> seen;
    for (const std::shared_ptr<T>& child : list) {
        if (child && seen.insert(child.get()).second)
            distinct.push_back(child);
    }
    return distinct;
}

/**
 * The children that a parent lists. The parent passes the operations that set the child's end of the link: `adopt`
 * makes it the child's parent, `release` leaves the child without one. A child whose end is set calls the parent's list
 * back before it notifies its observers; the list recognises such a call and does nothing.
 */
template <typename T>
class ChildList
{
public:
    using Child = std::shared_ptr<T>;
    using List = std::vector<Child>;

    const List& items() const { return m_items; }

    /// Appends @p child unless it is null or in the list; returns whether it did.
    template <typename Adopt>
    bool add(Child child, const Adopt& adopt)
    {
        if (!child || isInHand(child) || std::find(m_items.begin(), m_items.end(), child) != m_items.end())
            return false;
        m_items.push_back(child);
        setOtherEnd(child, adopt);
        return true;
    }

    /// Takes @p child out of the list; returns whether it was there.
    template <typename Release>
    bool remove(Child child, const Release& release)
    {
        if (isInHand(child))
            return false;
        const auto found = std::find(m_items.begin(), m_items.end(), child);
        if (found == m_items.end())
            return false;
        m_items.erase(found);
        setOtherEnd(child, release);
        return true;
    }

    /// Replaces the list, without null and repeated entries; returns whether that changed it.
    template <typename Adopt, typename Release>
    bool replace(const List& list, const Adopt& adopt, const Release& release)
    {
        const List children = distinctChildren(list);
        const List former = std::exchange(m_items, children);
        std::unordered_set<const T*> staying;
        for (const Child& child : children) {
            staying.insert(child.get());
            setOtherEnd(child, adopt);
        }
        for (const Child& child : former) {
            if (staying.count(child.get()) == 0)
                setOtherEnd(child, release);
        }
        return children != former;
    }

    /// Replaces the list by one whose children have their ends already; returns whether that changed it.
    bool link(List children)
    {
        m_items.swap(children);
        return m_items != children;
    }

private:
    template <typename Operation>
    void setOtherEnd(const Child& child, const Operation& operation)
    {
        const T* const outer = std::exchange(m_inHand, child.get());
        const auto reset = qScopeGuard([this, outer] { m_inHand = outer; });
        operation(*child);
    }

    /// Whether this call comes from setOtherEnd() of @p child. Only the first one does: a later one comes from an
    /// observer.
    bool isInHand(const Child& child)
    {
        if (!child || child.get() != m_inHand)
            return false;
        m_inHand = nullptr;
        return true;
    }

    List m_items;
    const T* m_inHand = nullptr;
};

} // namespace QOR::Entities
