#pragma once

#include <QScopeGuard>

#include <algorithm>
#include <memory>
#include <unordered_set>
#include <utility>
#include <vector>

namespace QOR::Entities {

/// The list without null and repeated entries, in its order.
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
 * The children that a parent lists. The child's end of the link is set by the operations that the parent gives: `adopt`
 * makes the parent that of the child, `release` takes it off. A child whose end is set turns to its parent's list in
 * its turn, before it tells its observers; the list knows that it has done that already.
 */
template <typename T>
class ChildList
{
public:
    using Child = std::shared_ptr<T>;
    using List = std::vector<Child>;

    const List& items() const { return m_items; }

    /// Appends @p child unless it is null or in the list; tells whether it did.
    template <typename Adopt>
    bool add(Child child, const Adopt& adopt)
    {
        if (!child || isInHand(child) || std::find(m_items.begin(), m_items.end(), child) != m_items.end())
            return false;
        m_items.push_back(child);
        setOtherEnd(child, adopt);
        return true;
    }

    /// Takes @p child out of the list; tells whether it was there.
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

    /// Replaces the list, without null and repeated entries; tells whether it is another one now.
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

    /// Replaces the list by one whose children have their ends already; tells whether it is another one now.
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

    /// Whether @p child only answers to what is being done with it. It does so once: what an observer asks for next is
    /// no answer.
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
